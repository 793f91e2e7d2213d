#include "items_box.h"

#include "scale.h"

#include <list>

namespace vell {
namespace {

Size content_size_of(const Evas_Object* box);

/** Scales a length to the window's current size. */
int rescaled(int length) { return pixels(length, scale().ratio); }

/** Returns the page's area: 240 x 135 units in the middle of the window's area. */
Area page_area(const Area& window) {
    const double unit = unit_in({window.width, window.height});
    const int width = pixels(page_units_across, unit);
    const int height = pixels(page_units_down, unit);
    return {window.x + (window.width - width) / 2, window.y + (window.height - height) / 2, width, height};
}

/** Returns an item's request, scaled to the window's current size and with its content measured. */
ItemRequest current_request(Evas_Object* object) {
    const auto& item = *attached<Item>(object);
    ItemRequest request = item.request;
    for (Size* const size : {&request.given, &request.minimum})
        *size = {rescaled(size->width), rescaled(size->height)};
    if (item.contents != nullptr)
        request.content = content_size_of(item.contents);
    else
        evas_object_size_hint_min_get(object, &request.content.width, &request.content.height);
    return request;
}

std::vector<ItemRequest> current_requests(const Evas_Object* box) {
    std::vector<ItemRequest> requests;
    for (Evas_Object* const item : items_in(box))
        requests.push_back(current_request(item));
    return requests;
}

Arrangement current_arrangement(const Evas_Object* box) {
    Arrangement arrangement = attached<ItemsBox>(box)->arrangement;
    auto& [left, right, top, bottom] = arrangement.padding;
    for (int* const length : {&arrangement.gap, &left, &right, &top, &bottom})
        *length = rescaled(*length);
    arrangement.mirrored = elm_config_mirrored_get() != EINA_FALSE;
    return arrangement;
}

Size content_size_of(const Evas_Object* box) {
    return content_size(current_arrangement(box), current_requests(box));
}

void place_items(Evas_Object* evas_box, Evas_Object_Box_Data*, void* data) {
    auto* const box = static_cast<Evas_Object*>(data);
    const auto& placing = *attached<ItemsBox>(box);
    if (placing.requests_size) {
        const Size size = content_size_of(box);
        evas_object_size_hint_min_set(evas_box, size.width, size.height);
    }
    Area area;
    evas_object_geometry_get(evas_box, &area.x, &area.y, &area.width, &area.height);
    const auto areas =
        place(placing.is_page ? page_area(area) : area, current_arrangement(box), current_requests(box));
    auto place = areas.begin();
    for (Evas_Object* const item : items_in(box)) {
        evas_object_geometry_set(item, place->x, place->y, place->width, place->height);
        ++place;
    }
}

std::list<WeakWidget>& waiting() {
    static std::list<WeakWidget> waiting;
    return waiting;
}

} // namespace

Evas_Object* items_box_add(Evas_Object* parent, const ItemsBox& placing) {
    Evas_Object* const box = elm_box_add(parent);
    attach<ItemsBox>(box) = placing;
    elm_box_layout_set(box, place_items, box, nullptr);
    return box;
}

void items_box_insert(Evas_Object* box, Evas_Object* item, std::size_t place) {
    const auto before = items_in(box);
    if (place < before.size())
        elm_box_pack_before(box, item, before.at(place));
    else
        elm_box_pack_end(box, item);
    attached<Item>(item)->holder = box;
    if (waiting().empty())
        ecore_job_add([](void*) { show_waiting(); }, nullptr);
    waiting().emplace_back(item);
}

std::vector<Evas_Object*> items_in(const Evas_Object* holder) {
    const auto* const item = attached<Item>(holder);
    const Evas_Object* const box = item == nullptr ? holder : item->contents;
    std::vector<Evas_Object*> items;
    if (attached<ItemsBox>(box) == nullptr)
        return items;
    Eina_List* const children = elm_box_children_get(box);
    for (const Eina_List* node = children; node != nullptr; node = eina_list_next(node))
        items.push_back(static_cast<Evas_Object*>(eina_list_data_get(node)));
    eina_list_free(children);
    return items;
}

void items_box_changed(Evas_Object* box) {
    if (box != nullptr)
        evas_object_smart_changed(box);
}

void show_waiting() {
    while (!waiting().empty()) {
        Evas_Object* const object = waiting().front();
        waiting().pop_front();
        if (object != nullptr)
            evas_object_show(object);
    }
}

} // namespace vell
