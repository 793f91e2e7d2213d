/** The widgets of a screen, as they are told on the bus. */
#pragma once

#include "ui_driver/screen.h"

#include <gio/gio.h>

namespace simulator {

/** A floating aa{sv}; see Screen in contract.h. */
GVariant* to_variant(const Screen& screen);

} // namespace simulator
