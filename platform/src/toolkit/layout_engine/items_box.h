/** Boxes whose items are placed by the layout engine, and the delayed showing of new items. */
#pragma once

#include "common/object_data.h"
#include "placement.h"

#include <cstdint>
#include <vector>

namespace vell {

/** The layout engine's record of a widget. */
struct Item {
    static constexpr const char* key = "vell/item";
    ItemRequest request;             /**< sizes before scaling; `content` is measured at layout time */
    Evas_Object* holder = nullptr;   /**< the box that places the widget */
    Evas_Object* contents = nullptr; /**< the box that determines the content size; if null, the theme does */
};

/** How a box places its items. */
struct ItemsBox {
    static constexpr const char* key = "vell/items";
    Arrangement arrangement;    /**< sizes before scaling; `mirrored` follows the configuration */
    bool is_page = false;       /**< the box covers the window, and uses the centred 16:9 area */
    bool requests_size = false; /**< the box's minimum size is its content size */
};

/** Creates an Elementary box inside `parent`. */
Evas_Object* items_box_add(Evas_Object* parent, const ItemsBox& placing = {});

/**
 * Inserts an item into a box at `place`, or at the end if there are fewer items. The item is shown at the next
 * rendering, at the latest at the end of this main-loop iteration.
 */
void items_box_insert(Evas_Object* box, Evas_Object* item, std::size_t place = SIZE_MAX);

/** Returns the items of a box, or of an item's `contents`, in order; none for any other object or null. */
std::vector<Evas_Object*> items_in(const Evas_Object* holder);

/** Marks a box so that it places its items again before the next frame; null is ignored. */
void items_box_changed(Evas_Object* box);

/** Shows all inserted items that are still hidden. */
void show_waiting();

} // namespace vell
