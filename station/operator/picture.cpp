#include "display.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <bit>
#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <png.h>
#include <stdexcept>
#include <thread>
#include <vector>

namespace station {
namespace {

using namespace std::chrono_literals;

constexpr auto look_interval = 100ms;
constexpr int most_looks = 20;

struct DestroyImage {
    void operator()(XImage* image) const { XDestroyImage(image); }
};
using Look = std::unique_ptr<XImage, DestroyImage>;

Look look(_XDisplay* display) {
    XWindowAttributes screen{};
    XGetWindowAttributes(display, DefaultRootWindow(display), &screen);
    Look look(XGetImage(display, DefaultRootWindow(display), 0, 0, static_cast<unsigned>(screen.width),
                        static_cast<unsigned>(screen.height), AllPlanes, ZPixmap));
    if (!look || look->red_mask == 0 || look->green_mask == 0 || look->blue_mask == 0)
        throw std::runtime_error("the screen cannot be read");
    return look;
}

bool are_same(const Look& one, const Look& other) {
    return one->width == other->width && one->height == other->height &&
           std::memcmp(one->data, other->data,
                       static_cast<std::size_t>(one->bytes_per_line) *
                           static_cast<std::size_t>(one->height)) == 0;
}

std::uint8_t part(unsigned long pixel, unsigned long mask) {
    return static_cast<std::uint8_t>((pixel & mask) >> std::countr_zero(mask));
}

std::vector<std::uint8_t> written(const Look& look) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(look->width);
    image.height = static_cast<png_uint_32>(look->height);
    image.format = PNG_FORMAT_RGB;
    std::vector<std::uint8_t> pixels;
    pixels.reserve(PNG_IMAGE_SIZE(image));
    for (int y = 0; y < look->height; ++y)
        for (int x = 0; x < look->width; ++x) {
            const unsigned long pixel = XGetPixel(look.get(), x, y);
            for (const unsigned long mask : {look->red_mask, look->green_mask, look->blue_mask})
                pixels.push_back(part(pixel, mask));
        }
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::uint8_t> file(size);
    if (png_image_write_to_memory(&image, file.data(), &size, 0, pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error(image.message);
    file.resize(size);
    return file;
}

/** A picture of the screen once its movements have ended. */
std::vector<std::uint8_t> picture_at_rest(_XDisplay* display) {
    auto next_look = std::chrono::steady_clock::now() + look_interval;
    Look seen = look(display);
    for (int looks = 1;; ++looks) {
        std::vector<std::uint8_t> picture = written(seen); // while it is waited for
        std::this_thread::sleep_until(next_look);
        next_look = std::chrono::steady_clock::now() + look_interval;
        Look next = look(display);
        if (looks == most_looks || are_same(next, seen))
            return picture;
        seen = std::move(next);
    }
}

} // namespace

void take_picture(const Display& display, const FileDescriptor& file) {
    const auto picture = picture_at_rest(display.get());
    for (std::size_t done = 0; done < picture.size();) {
        const auto count = write(file.get(), picture.data() + done, picture.size() - done);
        if (count < 0)
            throw std::runtime_error(std::string("the picture cannot be written: ") + std::strerror(errno));
        done += static_cast<std::size_t>(count);
    }
}

void take_picture(const Display& display, const std::string& path) {
    constexpr mode_t readable = 0644;
    const FileDescriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable));
    if (!file)
        throw std::runtime_error("cannot write the picture " + path + ": " + std::strerror(errno));
    take_picture(display, file);
}

} // namespace station
