#include "drawing_watch.h"

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>
#include <poll.h>
#include <stdexcept>

namespace bench {
namespace {

constexpr double whole_page = 0.9;
constexpr std::chrono::seconds page_patience(10);

/** Whether an event is there before the deadline. */
bool event_comes(_XDisplay* display, Clock::time_point deadline) {
    while (XPending(display) == 0) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        pollfd connection{.fd = ConnectionNumber(display), .events = POLLIN, .revents = 0};
        if (left <= 0 || poll(&connection, 1, static_cast<int>(left)) <= 0)
            return false;
    }
    return true;
}

} // namespace

DrawingWatch::DrawingWatch() {
    int first_error = 0;
    if (XDamageQueryExtension(display_.get(), &damage_event_, &first_error) == False)
        throw std::runtime_error("the X server does not tell of drawings (no DAMAGE extension)");
    XDamageCreate(display_.get(), DefaultRootWindow(display_.get()), XDamageReportRawRectangles);
    forget(); // what is on the screen so far counts as drawn, too
}

void DrawingWatch::forget() { XSync(display_.get(), True); }

std::optional<Drawing> DrawingWatch::next(std::chrono::milliseconds patience) {
    const auto deadline = Clock::now() + patience;
    while (event_comes(display_.get(), deadline)) {
        const auto moment = Clock::now();
        XEvent event{};
        XNextEvent(display_.get(), &event);
        if (event.type != damage_event_ + XDamageNotify)
            continue;
        const auto& damage = reinterpret_cast<const XDamageNotifyEvent&>(event);
        const double pixels = static_cast<double>(damage.area.width) * damage.area.height;
        return Drawing{moment,
                       pixels / (static_cast<double>(damage.geometry.width) * damage.geometry.height)};
    }
    return std::nullopt;
}

Clock::time_point DrawingWatch::next_page() {
    const auto deadline = Clock::now() + page_patience;
    while (const auto drawing = next(std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now())))
        if (drawing->share >= whole_page)
            return drawing->moment;
    throw std::runtime_error("no page is drawn");
}

void DrawingWatch::wait_for_quiet(std::chrono::milliseconds time) {
    while (next(time)) {
    }
}

Clock::time_point DrawingWatch::press(const std::vector<const char*>& way, const char* key) {
    wait_for_quiet(quiet);
    for (const char* const step : way) {
        simulator::press_key(display_, step);
        wait_for_quiet(quiet);
    }
    forget();
    const auto pressed = Clock::now();
    simulator::press_key(display_, key);
    return pressed;
}

} // namespace bench
