#include "silent_window_manager.h"
#include "window_manager.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string_view>

namespace {

template <class Manager>
[[noreturn]] void manage(Display* display) {
    Manager manager(display);
    std::puts("ready");
    std::fflush(stdout);
    while (true) {
        XEvent event{};
        XNextEvent(display, &event);
        manager.handle(event);
    }
}

} // namespace

/** With --silent it does as little as a window manager can. */
int main(int argc, char** argv) {
    const std::unique_ptr<Display, decltype(&XCloseDisplay)> display(XOpenDisplay(nullptr), XCloseDisplay);
    if (!display) {
        std::fputs("window_manager: no display\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        if (argc > 1 && std::string_view(argv[1]) == "--silent")
            manage<simulator::SilentWindowManager>(display.get());
        manage<simulator::WindowManager>(display.get());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "window_manager: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
