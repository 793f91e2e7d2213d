/** The widgets of a screen, as they are listed on the bus. */
#pragma once

#include "screen.h"

#include <gio/gio.h>

namespace simulator {

/** A floating aa{sv}; see org.velmora.Simulator.Ui.Screen. */
GVariant* to_variant(const Screen& screen);

} // namespace simulator
