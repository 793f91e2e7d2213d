#include "picture.h"

#include "ui_driver/screenshot.h"

#include <fcntl.h>
#include <thread>
#include <utility>

namespace simulator {

void take_picture(const Display& display, const std::string& path) {
    constexpr std::chrono::milliseconds interval{100};
    constexpr mode_t readable = 0644;
    Pixels seen = Pixels::of_screen(display.get());
    for (int looks = 1; looks < 20; ++looks) {
        std::this_thread::sleep_for(interval);
        Pixels before = std::exchange(seen, Pixels::of_screen(display.get()));
        if (before == seen)
            break;
    }
    write_picture(seen.to_png(),
                  FileDescriptor(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, readable)));
}

} // namespace simulator
