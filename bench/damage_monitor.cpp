#include "damage_monitor.h"

#include <X11/Xlib.h>
#include <X11/extensions/Xdamage.h>
#include <algorithm>
#include <poll.h>
#include <stdexcept>

namespace bench {

using namespace std::chrono_literals;

DamageMonitor::DamageMonitor() {
    int first_error = 0;
    if (XDamageQueryExtension(display_.get(), &damage_event_, &first_error) == False)
        throw std::runtime_error("the X server has no DAMAGE extension");
    XDamageCreate(display_.get(), DefaultRootWindow(display_.get()), XDamageReportRawRectangles);
    forget(); // the existing content is reported as drawn, too
}

void DamageMonitor::forget() { XSync(display_.get(), True); }

std::optional<Clock::time_point> DamageMonitor::next(std::chrono::milliseconds time, double share) {
    const auto deadline = Clock::now() + time;
    pollfd connection{.fd = ConnectionNumber(display_.get()), .events = POLLIN, .revents = 0};
    const auto milliseconds_left = [deadline] {
        return std::max(
            0,
            static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count()));
    };
    while (XPending(display_.get()) > 0 || poll(&connection, 1, milliseconds_left()) > 0) {
        const auto now = Clock::now();
        XEvent event{};
        XNextEvent(display_.get(), &event);
        const auto& damage = reinterpret_cast<const XDamageNotifyEvent&>(event);
        if (event.type == damage_event_ + XDamageNotify &&
            damage.area.width * damage.area.height >= share * damage.geometry.width * damage.geometry.height)
            return now;
    }
    return std::nullopt;
}

Clock::time_point DamageMonitor::wait_for_drawing(double share) {
    if (const auto drawn = next(10s, share))
        return *drawn;
    throw std::runtime_error("nothing is drawn");
}

void DamageMonitor::wait_until_quiet() {
    while (next(quiet)) {
    }
}

Clock::time_point DamageMonitor::press(const std::vector<const char*>& keys) {
    Clock::time_point pressed;
    for (const char* const key : keys) {
        wait_until_quiet();
        pressed = Clock::now();
        simulator::press_key(display_, key);
    }
    return pressed;
}

} // namespace bench
