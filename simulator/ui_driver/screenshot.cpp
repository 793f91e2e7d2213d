#include "screenshot.h"

#include "base/bus.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <bit>
#include <cerrno>
#include <cstring>
#include <png.h>
#include <stdexcept>
#include <utility>

namespace simulator {
namespace {

constexpr guint picture_interval_milliseconds = 100;
constexpr int max_looks = 20;

/** Runs in a thread, since compression is slow and writing may block forever. */
struct Work {
    Pixels pixels;
    FileDescriptor file;
    std::string error = {};

    static void run(GTask* task, gpointer /*source*/, gpointer data, GCancellable* /*cancel*/) {
        auto& work = *static_cast<Work*>(data);
        try {
            write_picture(work.pixels.to_png(), work.file);
        } catch (const std::exception& failure) {
            work.error = failure.what();
        }
        g_task_return_boolean(task, TRUE);
    }
    static void release(gpointer data) { const std::unique_ptr<Work> held(static_cast<Work*>(data)); }
};

} // namespace

Pixels Pixels::of_screen(_XDisplay* display) {
    XWindowAttributes screen{};
    XGetWindowAttributes(display, DefaultRootWindow(display), &screen);
    return {display, 0, 0, screen.width, screen.height};
}

Pixels::Pixels(_XDisplay* display, int x, int y, int width, int height)
    : image_(XGetImage(display, DefaultRootWindow(display), x, y, static_cast<unsigned>(width),
                       static_cast<unsigned>(height), AllPlanes, ZPixmap)) {
    if (!image_ || image_->bits_per_pixel != 32 || image_->red_mask == 0)
        throw Refusal("NotWritten", "cannot read the screen");
}

void Pixels::DestroyImage::operator()(_XImage* image) const { XDestroyImage(image); }

Color Pixels::at(int x, int y) const {
    std::uint32_t pixel = 0;
    const auto offset = std::ptrdiff_t{y} * image_->bytes_per_line + std::ptrdiff_t{x} * 4;
    std::memcpy(&pixel, image_->data + offset, sizeof pixel);
    const auto component = [pixel](unsigned long mask) {
        return static_cast<std::uint8_t>((pixel & mask) >> std::countr_zero(mask));
    };
    return {component(image_->red_mask), component(image_->green_mask), component(image_->blue_mask)};
}

bool Pixels::operator==(const Pixels& other) const {
    const auto size = [](const XImage& image) {
        return static_cast<std::size_t>(image.bytes_per_line) * static_cast<std::size_t>(image.height);
    };
    return size(*image_) == size(*other.image_) &&
           std::memcmp(image_->data, other.image_->data, size(*image_)) == 0;
}

std::vector<std::uint8_t> Pixels::to_png() const {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(image_->width);
    image.height = static_cast<png_uint_32>(image_->height);
    image.format = PNG_FORMAT_RGB;
    image.flags = PNG_IMAGE_FLAG_FAST; // three times faster, slightly larger file
    std::vector<std::uint8_t> pixels;
    pixels.reserve(PNG_IMAGE_SIZE(image));
    for (int y = 0; y < image_->height; ++y)
        for (int x = 0; x < image_->width; ++x) {
            const Color color = at(x, y);
            pixels.insert(pixels.end(), color.begin(), color.end());
        }
    png_alloc_size_t size = PNG_IMAGE_PNG_SIZE_MAX(image);
    std::vector<std::uint8_t> file(size);
    if (png_image_write_to_memory(&image, file.data(), &size, 0, pixels.data(), 0, nullptr) == 0)
        throw std::runtime_error(image.message);
    file.resize(size);
    return file;
}

void write_picture(const std::vector<std::uint8_t>& picture, const FileDescriptor& file) {
    for (std::size_t done = 0; done < picture.size();) {
        const auto count = write(file.get(), picture.data() + done, picture.size() - done);
        if (count < 0)
            throw std::runtime_error(std::string("cannot write the picture: ") + std::strerror(errno));
        done += static_cast<std::size_t>(count);
    }
}

Screenshot::Screenshot(_XDisplay* display, Pixels first, FileDescriptor file, Taken taken)
    : display_(display), file_(std::move(file)), taken_(std::move(taken)), pixels_(std::move(first)),
      cancel_(g_cancellable_new()) {
    next_look_ = call_every(picture_interval_milliseconds, [this] { look_again(); });
}

Screenshot::~Screenshot() { g_cancellable_cancel(cancel_.get()); }

void Screenshot::look_again() {
    try {
        const Pixels before = std::exchange(pixels_, Pixels::of_screen(display_));
        if (++looks_ < max_looks && before != pixels_)
            return;
    } catch (const std::runtime_error& error) {
        return finish(error.what());
    }
    next_look_.reset();
    const auto on_done = +[](GObject* /*source*/, GAsyncResult* result, gpointer self) {
        const auto& work = *static_cast<Work*>(g_task_get_task_data(G_TASK(result)));
        if (g_task_propagate_boolean(G_TASK(result), nullptr) != FALSE) // otherwise `self` no longer exists
            static_cast<Screenshot*>(self)->finish(work.error);
    };
    g_autoptr(GTask) task = g_task_new(nullptr, cancel_.get(), on_done, this);
    auto work = std::make_unique<Work>(Work{std::move(pixels_), std::move(file_)});
    g_task_set_task_data(task, work.release(), Work::release);
    g_task_run_in_thread(task, Work::run);
}

void Screenshot::finish(const std::string& error) {
    next_look_.reset();
    const Taken taken = std::move(taken_);
    taken(error);
}

} // namespace simulator
