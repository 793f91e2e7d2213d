/** The event handlers the application registered. */
#pragma once

#include "platform/application.h"

#include <array>
#include <optional>

namespace platform {

class EventInformation {
public:
    explicit EventInformation(EventType type) : type_(type) {}
    [[nodiscard]] EventType type() const { return type_; }

private:
    EventType type_;
};

class EventHandler {
public:
    EventHandler(EventCallback callback, void* user_data) : callback_(callback), user_data_(user_data) {}
    /** Calls the application; an exception that leaves its callback is logged. */
    void deliver(EventType type) const;

private:
    EventCallback callback_;
    void* user_data_;
};

/** One slot for each event type, for the whole process: handlers are registered before the framework runs. */
class EventHandlers {
public:
    static EventHandlers& instance();

    /** Registers a handler, replacing the type's earlier one; null when the type is unknown or the callback
     * null. */
    EventHandler* add(EventType type, EventCallback callback, void* user_data);
    /** Calls the type's handler, if there is one. */
    void deliver(EventType type) const;

private:
    std::array<std::optional<EventHandler>, 5> slots_;
};

} // namespace platform
