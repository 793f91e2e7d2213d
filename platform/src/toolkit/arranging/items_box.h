/** A box whose items the toolkit places itself. */
#pragma once

#include <Elementary.h>

#include "toolkit/widgets/widget.h"

#include <functional>
#include <span>
#include <vector>

namespace vell {

/** Gives the area of each of the box's items, in the box's order. */
using PlaceItems = std::function<std::vector<Area>(const Area& box, std::span<Evas_Object* const> items)>;

/** Gives the least size of a box with these items. */
using LeastSize = std::function<Size(std::span<Evas_Object* const> items)>;

/**
 * Makes an Elementary box inside `parent` that places its items with `place_items`. What holds the box is told `least_size`; without it the box asks for no space.
 */
Evas_Object* items_box_add(Evas_Object* parent, PlaceItems place_items, LeastSize least_size = nullptr);

/** Puts a widget behind the box's items. */
void items_box_append(Evas_Object* box, Widget& widget);

/** The box's items, in its order. */
std::vector<Evas_Object*> items_in(const Evas_Object* box);

/** Has the box place its items anew before the next frame. */
void items_box_changed(Evas_Object* box);

/** What an item asks of its holder now: sizes at the window's present size, content measured. */
ItemRequest current_request(Evas_Object* item);

} // namespace vell
