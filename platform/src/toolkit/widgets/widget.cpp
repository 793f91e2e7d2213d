#include "widget.h"

#include "toolkit/layout_engine/items_box.h"

#include <platform/vell.h>

namespace vell {
namespace {

struct Record {
    static constexpr const char* key = "vell/widget";
    Family family{};
};

/** Applies `change` to a widget's request and marks its box for a new layout. */
template <class Change>
void change_request(Evas_Object* object, Change change) {
    auto* const item = attached<Item>(object);
    if (item == nullptr)
        return;
    change(item->request);
    items_box_changed(item->holder);
}

bool is_policy(int policy) { return policy == 1 || policy == 3 || policy == 4; }

} // namespace

Evas_Object* adopt(Evas_Object* object, Family family) {
    if (object == nullptr)
        return nullptr;
    attach<Record>(object).family = family;
    attach<Item>(object);
    return object;
}

bool is_a(Family family, const Evas_Object* object) {
    const auto* const record = attached<Record>(object);
    return record != nullptr && record->family == family;
}

std::string markup(const char* text) {
    const std::unique_ptr<char, decltype(&std::free)> escaped(
        elm_entry_utf8_to_markup(text == nullptr ? "" : text), &std::free);
    return escaped == nullptr ? std::string() : std::string(escaped.get());
}

} // namespace vell

void elm_vell_object_size_min_set(Evas_Object* object, int width, int height) {
    vell::change_request(object, [=](vell::ItemRequest& request) { request.minimum = {width, height}; });
}

void elm_vell_object_resize_policy_set(Evas_Object* object, int horizontal, int vertical) {
    if (!vell::is_policy(horizontal) || !vell::is_policy(vertical))
        return;
    vell::change_request(object, [=](vell::ItemRequest& request) {
        request.horizontal = static_cast<vell::ResizePolicy>(horizontal);
        request.vertical = static_cast<vell::ResizePolicy>(vertical);
    });
}

void elm_vell_object_weight_set(Evas_Object* object, double weight) {
    if (weight >= 0.0)
        vell::change_request(object, [=](vell::ItemRequest& request) { request.weight = weight; });
}
