/** Reading and writing window properties made of 32-bit items. */
#pragma once

#include <X11/Xlib.h>

#include <vector>

namespace simulator {

/** The items of a window's property, none when the property is missing or of another type. */
std::vector<unsigned long> read_property(Display* display, Window window, Atom property, Atom type);

/** Replaces a window's property. */
void write_property(Display* display, Window window, Atom property, Atom type,
                    const std::vector<unsigned long>& items);

} // namespace simulator
