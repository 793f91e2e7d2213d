/** The application's event handler. */
#pragma once

#include "platform/application.h"

namespace platform {

class EventInformation {};

class EventHandler {
public:
    EventHandler() = default;
    EventHandler(EventCallback callback, void* user_data) : callback_(callback), user_data_(user_data) {}
    /** Calls the application, if it registered a callback; an exception that leaves it is logged. */
    void deliver() const;

private:
    EventCallback callback_ = nullptr;
    void* user_data_ = nullptr;
};

/** The handler of a changed language, for the whole process: it is registered before the framework runs. */
EventHandler& language_changed_handler();

} // namespace platform
