#include "keyboard.h"
#include "pixels.h"

#include <cerrno>
#include <chrono>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <png.h>
#include <stdexcept>
#include <thread>
#include <vector>

namespace simulator {
namespace {

using namespace std::chrono_literals;

constexpr auto picture_interval = 100ms;
constexpr int most_looks = 20;

std::vector<std::uint8_t> written(const Pixels& look) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(look.width());
    image.height = static_cast<png_uint_32>(look.height());
    image.format = PNG_FORMAT_RGB;
    std::vector<std::uint8_t> pixels;
    pixels.reserve(PNG_IMAGE_SIZE(image));
    for (int y = 0; y < look.height(); ++y)
        for (int x = 0; x < look.width(); ++x) {
            const Color color = look.at(x, y);
            pixels.insert(pixels.end(), color.begin(), color.end());
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
    auto next_look = std::chrono::steady_clock::now() + picture_interval;
    Pixels seen = Pixels::of_screen(display);
    for (int looks = 1;; ++looks) {
        std::vector<std::uint8_t> picture = written(seen); // while it is waited for
        std::this_thread::sleep_until(next_look);
        next_look = std::chrono::steady_clock::now() + picture_interval;
        Pixels next = Pixels::of_screen(display);
        if (looks == most_looks || next == seen)
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

} // namespace simulator
