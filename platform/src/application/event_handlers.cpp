#include "event_handlers.h"

#include "guarded_call.h"

namespace platform {

void EventHandler::deliver() const {
    EventInformation information;
    if (callback_)
        guarded_call("event handler", callback_, &information, user_data_);
}

EventHandler& language_changed_handler() {
    static EventHandler handler;
    return handler;
}

} // namespace platform

int ui_app_add_event_handler(platform::EventHandler** handler, platform::EventType type,
                             platform::EventCallback callback, void* user_data) {
    if (type != platform::EventType::language_changed || !callback)
        return platform::application_invalid_argument;
    auto& registered = platform::language_changed_handler();
    registered = {callback, user_data};
    if (handler)
        *handler = &registered;
    return platform::application_ok;
}
