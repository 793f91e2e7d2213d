#pragma once

#include "ui_driver/keyboard.h"

#include <string>

namespace simulator {

/**
 * Leaves a PNG picture of the whole screen, once two looks at it 100 ms apart show the same, or after two seconds.
 *
 * @throws std::runtime_error when the screen cannot be read or the file not be written.
 */
void take_picture(const Display& display, const std::string& path);

} // namespace simulator
