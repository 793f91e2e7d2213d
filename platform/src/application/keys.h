/** Client-control keys on a keyboard. */
#pragma once

#include "ecore_handlers.h"

namespace platform {

/**
 * While it lives, Escape, F12 and F1 reach every key handler, Evas's included, as "XF86Back", "XF86Exit" and
 * "XF86Red". The real keys of these names go on working.
 */
class RemoteControlKeys {
public:
    RemoteControlKeys();

private:
    OwnedEventFilter filter_;
};

} // namespace platform
