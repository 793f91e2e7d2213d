/** Looks at the screen for all who wait for something on it. */
#pragma once

#include "base/event_source.h"
#include "ui_driver/screen_reader.h"

#include <functional>
#include <list>
#include <optional>
#include <string>

namespace simulator {

/**
 * Works in the main loop, where an application that does not answer may hold it up; any thread may call it.
 * The screen reader is announced when the first look is wanted. One look serves everyone who waits, and
 * nobody is shown a look that began before they asked.
 */
class ScreenWatch {
public:
    /** Is shown one look after the other until it answers that it has seen enough. */
    using Watcher = std::function<bool(const Screen&)>;

    ScreenWatch() = default;
    ScreenWatch(const ScreenWatch&) = delete;
    ScreenWatch& operator=(const ScreenWatch&) = delete;

    /** @return the reader, for what else is asked of the application. Only in the main loop. */
    [[nodiscard]] const ScreenReader& reader() const { return *reader_; }

    /**
     * @param caller  who asks, a name on the bus.
     * @param watcher called from the main loop.
     */
    void add(const std::string& caller, Watcher watcher);
    /** The caller has left the bus, and sees nothing any more. */
    void drop(const std::string& caller);

private:
    struct Entry {
        std::string caller;
        Watcher watcher;
    };

    void look();
    Screen read();

    std::optional<ScreenReader> reader_;
    std::list<Entry> entries_;
    EventSource next_look_;
};

} // namespace simulator
