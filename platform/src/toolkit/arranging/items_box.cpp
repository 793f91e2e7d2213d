#include "items_box.h"

#include "toolkit/widgets/layout.h"
#include "toolkit/widgets/widget.h"
#include "toolkit/window/manager.h"

#include <algorithm>

namespace vell {
namespace {

struct Items {
    static constexpr const char* key = "vell/items";
    PlaceItems place_items;
    LeastSize least_size;
};

std::vector<Evas_Object*> children(const Evas_Object_Box_Data* box) {
    std::vector<Evas_Object*> items;
    for (const Eina_List* node = box->children; node != nullptr; node = eina_list_next(node))
        items.push_back(static_cast<Evas_Object_Box_Option*>(eina_list_data_get(node))->obj);
    return items;
}

void place_children(Evas_Object* evas_box, Evas_Object_Box_Data* box, void* data) {
    Area area;
    evas_object_geometry_get(evas_box, &area.x, &area.y, &area.width, &area.height);
    const std::vector<Evas_Object*> items = children(box);
    const auto& [place_items, least_size] = *static_cast<Items*>(data);
    if (least_size) {
        const Size size = least_size(items);
        evas_object_size_hint_min_set(evas_box, size.width, size.height);
    }
    const std::vector<Area> areas = place_items(area, items);
    for (std::size_t i = 0; i < items.size() && i < areas.size(); ++i)
        evas_object_geometry_set(items[i], areas[i].x, areas[i].y, areas[i].width, areas[i].height);
}

} // namespace

Evas_Object* items_box_add(Evas_Object* parent, PlaceItems place_items, LeastSize least_size) {
    Evas_Object* const box = elm_box_add(parent);
    auto& items = attach<Items>(box);
    items.place_items = std::move(place_items);
    items.least_size = std::move(least_size);
    elm_box_layout_set(box, place_children, &items, nullptr);
    return box;
}

void items_box_append(Evas_Object* box, Widget& widget) {
    elm_box_pack_end(box, widget.object);
    widget.holder = box;
}

std::vector<Evas_Object*> items_in(const Evas_Object* box) {
    std::vector<Evas_Object*> items;
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

ItemRequest current_request(Evas_Object* item) {
    const Widget* const widget = find(item);
    if (widget == nullptr)
        return {};
    ItemRequest request = Manager::instance().rescaled(widget->request);
    Size& content = request.content;
    if (widget->family == Family::layout)
        content = layout_content_size(item);
    else
        evas_object_size_hint_min_get(item, &content.width, &content.height);
    if (widget->family ==
        Family::spinner) // its number is read from afar: the theme says how large it is at least
        request.minimum = {std::max(request.minimum.width, content.width),
                           std::max(request.minimum.height, content.height)};
    return request;
}

} // namespace vell
