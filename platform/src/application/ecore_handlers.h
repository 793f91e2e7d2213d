/** Ownership of Ecore's event handlers. */
#pragma once

#include <Ecore.h>
#include <memory>

namespace platform {

struct EventHandlerRemoval {
    void operator()(Ecore_Event_Handler* handler) const { ecore_event_handler_del(handler); }
};
/** Owns a registered Ecore event handler. */
using OwnedEventHandler = std::unique_ptr<Ecore_Event_Handler, EventHandlerRemoval>;

struct EventFilterRemoval {
    void operator()(Ecore_Event_Filter* filter) const { ecore_event_filter_del(filter); }
};
/** Owns a registered Ecore event filter. */
using OwnedEventFilter = std::unique_ptr<Ecore_Event_Filter, EventFilterRemoval>;

} // namespace platform
