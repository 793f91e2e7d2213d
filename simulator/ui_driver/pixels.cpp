#include "pixels.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <bit>
#include <cstring>
#include <stdexcept>

namespace simulator {

Pixels Pixels::of_screen(_XDisplay* display) {
    XWindowAttributes screen{};
    XGetWindowAttributes(display, DefaultRootWindow(display), &screen);
    return {display, 0, 0, screen.width, screen.height};
}

Pixels::Pixels(_XDisplay* display, int x, int y, int width, int height)
    : image_(XGetImage(display, DefaultRootWindow(display), x, y, static_cast<unsigned>(width),
                       static_cast<unsigned>(height), AllPlanes, ZPixmap)) {
    if (!image_ || image_->red_mask == 0 || image_->green_mask == 0 || image_->blue_mask == 0)
        throw std::runtime_error("the screen cannot be read");
}

void Pixels::DestroyImage::operator()(_XImage* image) const { XDestroyImage(image); }

int Pixels::width() const { return image_->width; }
int Pixels::height() const { return image_->height; }

Color Pixels::at(int x, int y) const {
    const unsigned long pixel = XGetPixel(image_.get(), x, y);
    const auto part = [pixel](unsigned long mask) {
        return static_cast<std::uint8_t>((pixel & mask) >> std::countr_zero(mask));
    };
    return {part(image_->red_mask), part(image_->green_mask), part(image_->blue_mask)};
}

bool Pixels::operator==(const Pixels& other) const {
    const auto size = [](const XImage& image) {
        return static_cast<std::size_t>(image.bytes_per_line) * static_cast<std::size_t>(image.height);
    };
    return width() == other.width() && height() == other.height() &&
           std::memcmp(image_->data, other.image_->data, size(*image_)) == 0;
}

} // namespace simulator
