/** What is drawn on the screen. */
#pragma once

#include <array>
#include <cstdint>
#include <memory>

struct _XDisplay; // Xlib's own names; its header defines words that others use
struct _XImage;

namespace simulator {

/** How strong red, green and blue are. */
using Color = std::array<std::uint8_t, 3>;

/** An area of a screen as it was at one look. */
class Pixels {
public:
    /** Looks at an area of the screen. @throws std::runtime_error when it cannot be read. */
    Pixels(_XDisplay* display, int x, int y, int width, int height);
    /** Looks at all of it. @throws std::runtime_error when it cannot be read. */
    static Pixels of_screen(_XDisplay* display);

    [[nodiscard]] int width() const;
    [[nodiscard]] int height() const;
    [[nodiscard]] Color at(int x, int y) const;
    bool operator==(const Pixels& other) const;

private:
    struct DestroyImage {
        void operator()(_XImage* image) const;
    };
    std::unique_ptr<_XImage, DestroyImage> image_;
};

} // namespace simulator
