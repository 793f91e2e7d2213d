#include "display.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <bit>
#include <chrono>
#include <cstdint>
#include <png.h>
#include <stdexcept>
#include <thread>
#include <vector>

namespace station {
namespace {

using namespace std::chrono_literals;

constexpr auto look_interval = 100ms;
constexpr int most_looks = 20;

struct Picture {
    unsigned width = 0;
    unsigned height = 0;
    std::vector<std::uint8_t> pixels; // red, green, blue
    bool operator==(const Picture&) const = default;
};

struct DestroyImage {
    void operator()(XImage* image) const { XDestroyImage(image); }
};

std::uint8_t part(unsigned long pixel, unsigned long mask) {
    return static_cast<std::uint8_t>((pixel & mask) >> std::countr_zero(mask));
}

Picture look(_XDisplay* display) {
    XWindowAttributes screen{};
    XGetWindowAttributes(display, DefaultRootWindow(display), &screen);
    const std::unique_ptr<XImage, DestroyImage> image(
        XGetImage(display, DefaultRootWindow(display), 0, 0, static_cast<unsigned>(screen.width),
                  static_cast<unsigned>(screen.height), AllPlanes, ZPixmap));
    if (!image || image->red_mask == 0 || image->green_mask == 0 || image->blue_mask == 0)
        throw std::runtime_error("the screen cannot be read");
    Picture picture{static_cast<unsigned>(screen.width), static_cast<unsigned>(screen.height), {}};
    picture.pixels.reserve(std::size_t{3} * picture.width * picture.height);
    for (int y = 0; y < screen.height; ++y)
        for (int x = 0; x < screen.width; ++x) {
            const unsigned long pixel = XGetPixel(image.get(), x, y);
            for (const unsigned long mask : {image->red_mask, image->green_mask, image->blue_mask})
                picture.pixels.push_back(part(pixel, mask));
        }
    return picture;
}

/** The screen once its movements have ended. */
Picture look_at_rest(_XDisplay* display) {
    Picture picture = look(display);
    for (int looks = 1; looks < most_looks; ++looks) {
        std::this_thread::sleep_for(look_interval);
        Picture next = look(display);
        if (next == picture)
            break;
        picture = std::move(next);
    }
    return picture;
}

} // namespace

void take_picture(const Display& display, const std::string& path) {
    const Picture picture = look_at_rest(display.get());
    png_image file{};
    file.version = PNG_IMAGE_VERSION;
    file.width = picture.width;
    file.height = picture.height;
    file.format = PNG_FORMAT_RGB;
    if (png_image_write_to_file(&file, path.c_str(), 0, picture.pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error("cannot write the picture " + path + ": " + file.message);
}

} // namespace station
