/** The widgets of a screen, as they are told on the bus. */
#pragma once

#include "ui_driver/screen.h"

#include <gio/gio.h>

namespace simulator {

/** A floating aa{sv}; see org.velmora.Simulator.Ui.Screen. */
GVariant* to_variant(const Screen& screen);

} // namespace simulator
