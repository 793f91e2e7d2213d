/** The widgets of a screen, as they are told on the bus. */
#pragma once

#include "operator/screen.h"

#include <gio/gio.h>

namespace station {

/** A floating aa{sv}; see Screen in contract.h. */
GVariant* list_of(const Screen& screen);

} // namespace station
