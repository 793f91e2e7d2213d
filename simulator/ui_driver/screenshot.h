/** Reads pixels of the screen and takes screenshots. */
#pragma once

#include "base/event_source.h"
#include "base/owned.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

struct _XDisplay; // Xlib's names; Xlib.h defines macros that clash with other names
struct _XImage;

namespace simulator {

/** Red, green and blue, each from 0 to 255. */
using Color = std::array<std::uint8_t, 3>;

/** A copy of an area of the screen. */
class Pixels {
public:
    /** Copies an area of the screen. @throws Refusal if it cannot be read. */
    Pixels(_XDisplay* display, int x, int y, int width, int height);
    /** Copies the whole screen. @throws Refusal if it cannot be read. */
    static Pixels of_screen(_XDisplay* display);

    [[nodiscard]] Color at(int x, int y) const;
    bool operator==(const Pixels& other) const;
    /** @return the bytes of a PNG file. @throws std::runtime_error. */
    [[nodiscard]] std::vector<std::uint8_t> to_png() const;

private:
    struct DestroyImage {
        void operator()(_XImage* image) const;
    };
    std::unique_ptr<_XImage, DestroyImage> image_;
};

/** Writes a picture to a file at its current position. @throws std::runtime_error. */
void write_picture(const std::vector<std::uint8_t>& picture, const FileDescriptor& file);

/** Takes a screenshot once two copies taken 100 ms apart are equal, or after two seconds. */
class Screenshot {
public:
    /** @param error empty on success. */
    using Taken = std::function<void(const std::string& error)>;

    /**
     * @param display must outlive this.
     * @param first   the first copy.
     * @param taken   called once, from the main loop; it may destroy this.
     */
    Screenshot(_XDisplay* display, Pixels first, FileDescriptor file, Taken taken);
    ~Screenshot();

private:
    void look_again();
    void finish(const std::string& error);

    _XDisplay* display_;
    FileDescriptor file_;
    Taken taken_;
    int looks_ = 0;
    Pixels pixels_;
    EventSource next_look_;
    Object<GCancellable> cancel_;
};

} // namespace simulator
