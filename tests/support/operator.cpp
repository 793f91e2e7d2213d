#include "operator.h"

#include <thread>
#include <utility>

namespace simulator {
namespace {

using namespace std::chrono_literals;

constexpr auto look_interval = 50ms;
constexpr auto answer_patience = 1s;

} // namespace

Operator::Operator(std::string application, std::chrono::milliseconds patience)
    : application_(std::move(application)), patience_(patience), display_(open_display()),
      reader_(answer_patience) {}

void Operator::press(const std::string& key, int times) {
    for (int time = 0; time < times; ++time)
        press_key(display_, key);
}

void Operator::activate(const std::string& name) {
    const Screen& screen = wait_for(name);
    reader_.activate(*screen.find(name));
}

std::optional<Widget> Operator::focused() const {
    const Screen now = screen();
    const Widget* const widget = now.focused();
    return widget != nullptr ? std::optional(*widget) : std::nullopt;
}

const Screen& Operator::wait_until(Condition condition) {
    const Wait wait(std::move(condition), patience_);
    while (!wait.is_over(seen_ = screen())) {
        if (followed_ != nullptr && followed_->number() == 0)
            throw NotSeen("the application has ended; the screen did not show " + wait.wanted());
        std::this_thread::sleep_for(look_interval);
    }
    return seen_;
}

const Screen& Operator::wait_for(const std::string& text) { return wait_until(text_shown(text)); }

const Screen& Operator::wait_for_focus(const std::string& name) { return wait_until(focus_on(name)); }

} // namespace simulator
