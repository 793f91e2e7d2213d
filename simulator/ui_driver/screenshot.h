/** What is drawn on the screen, and pictures of it. */
#pragma once

#include "base/event_source.h"
#include "base/owned.h"

#include <array>
#include <cstdint>
#include <string>
#include <vector>

struct _XDisplay; // Xlib's own names; its header defines words that others use
struct _XImage;

namespace simulator {

/** How strong red, green and blue are. */
using Color = std::array<std::uint8_t, 3>;

/** An area of a screen as it was at one look. */
class Pixels {
public:
    /** Looks at an area of the screen. @throws Refusal if it cannot be read. */
    Pixels(_XDisplay* display, int x, int y, int width, int height);
    /** Looks at all of it. @throws Refusal if it cannot be read. */
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

/** Writes a picture into a file, from where it stands. @throws std::runtime_error. */
void write_picture(const std::vector<std::uint8_t>& picture, const FileDescriptor& file);

/** Takes a picture of the screen once two looks 100 ms apart show the same, or after two seconds. */
class Screenshot {
public:
    /** @param error empty when the picture is in the file. */
    using Taken = std::function<void(const std::string& error)>;

    /**
     * @param display outlives this.
     * @param first   the first look.
     * @param taken   called once, from the main loop; it may end this.
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
