/** Boxes whose items the toolkit places itself, and shows when the layout is rendered. */
#pragma once

#include "common/object_data.h"
#include "placement.h"

#include <cstdint>
#include <vector>

namespace vell {

/** What the layout engine keeps with a widget. */
struct Item {
    static constexpr const char* key = "vell/item";
    ItemRequest request; /**< sizes at the unit of the initialization; `content` is measured later */
    Evas_Object* holder = nullptr; /**< the box that places it */
    Evas_Object* contents =
        nullptr; /**< the box that says how large its content is; else its theme says so */
};

/** How a box places its items. */
struct ItemsBox {
    static constexpr const char* key = "vell/items";
    Arrangement
        arrangement; /**< sizes at the unit of the initialization; `mirrored` follows the configuration */
    bool is_page = false;       /**< it has the whole window and uses the page's area */
    bool asks_for_room = false; /**< its least size is that of its items */
};

/** Makes an Elementary box inside `parent`. */
Evas_Object* items_box_add(Evas_Object* parent, const ItemsBox& placing = {});

/**
 * Puts an item into a box, before the one that is at this place now or else behind all. It is shown when the layout is next
 * rendered, at the latest at the end of this turn of the main loop.
 */
void items_box_insert(Evas_Object* box, Evas_Object* item, std::size_t place = SIZE_MAX);

/** The items of a box, or of an item that has one, in the box's order; none of anything else and of null. */
std::vector<Evas_Object*> items_in(const Evas_Object* holder);

/** Has the box place its items again before the next frame. */
void items_box_changed(Evas_Object* box);

/** Shows every item that waits for that. */
void show_waiting();

} // namespace vell
