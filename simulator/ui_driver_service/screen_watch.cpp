#include "screen_watch.h"

#include "base/main_loop.h"

#include <chrono>
#include <stdexcept>

namespace simulator {
namespace {

using namespace std::chrono_literals;

constexpr guint look_interval_milliseconds = 15;
constexpr auto answer_patience = 300ms;

} // namespace

void ScreenWatch::add(const std::string& caller, Watcher watcher) {
    call_in(nullptr, [this, caller, watcher = std::move(watcher)] {
        entries_.push_back({caller, watcher});
        look();
    });
}

void ScreenWatch::drop(const std::string& caller) {
    call_in(nullptr, [this, caller] {
        entries_.remove_if([&caller](const Entry& entry) { return entry.caller == caller; });
    });
}

void ScreenWatch::look() {
    next_look_.reset();
    const Screen screen = read();
    entries_.remove_if([&screen](const Entry& entry) { return entry.watcher(screen); });
    if (!entries_.empty())
        next_look_ = EventSource::every(look_interval_milliseconds, [this] { look(); });
}

Screen ScreenWatch::read() {
    try {
        if (!reader_ || !reader_->is_connected())
            reader_.emplace(answer_patience);
        return reader_->read("");
    } catch (const std::runtime_error& error) {
        return Screen::unreadable(error.what());
    }
}

} // namespace simulator
