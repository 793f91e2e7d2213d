#include "event_handlers.h"

#include "guarded_call.h"

#include <cstddef>

namespace platform {

void EventHandler::deliver(EventType type) const {
    EventInformation information(type);
    guarded_call("event handler", callback_, &information, user_data_);
}

EventHandlers& EventHandlers::instance() {
    static EventHandlers handlers;
    return handlers;
}

EventHandler* EventHandlers::add(EventType type, EventCallback callback, void* user_data) {
    const auto slot = static_cast<std::size_t>(type); // a negative type becomes a huge one
    if (!callback || slot >= slots_.size())
        return nullptr;
    return &slots_[slot].emplace(callback, user_data);
}

void EventHandlers::deliver(EventType type) const {
    const auto handler =
        slots_[static_cast<std::size_t>(type)]; // a copy: the callback may replace its own slot
    if (handler)
        handler->deliver(type);
}

} // namespace platform

int ui_app_add_event_handler(platform::EventHandler** handler, platform::EventType type,
                             platform::EventCallback callback, void* user_data) {
    auto* const added = platform::EventHandlers::instance().add(type, callback, user_data);
    if (!added)
        return platform::application_invalid_argument;
    if (handler)
        *handler = added;
    return platform::application_ok;
}
