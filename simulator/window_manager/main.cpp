#include "window_manager.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>

int main() {
    const std::unique_ptr<Display, decltype(&XCloseDisplay)> display(XOpenDisplay(nullptr), XCloseDisplay);
    if (!display) {
        std::fputs("window_manager: no display\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        simulator::WindowManager manager(display.get());
        std::puts("ready");
        std::fflush(stdout);
        while (true) {
            XEvent event{};
            XNextEvent(display.get(), &event);
            manager.handle(event);
        }
    } catch (const std::exception& error) {
        std::fprintf(stderr, "window_manager: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
