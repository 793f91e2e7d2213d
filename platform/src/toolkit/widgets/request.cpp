#include "toolkit/arranging/items_box.h"

#include <platform/vell.h>

namespace {

/** Applies `change` to what a widget asks of its holder, which then places its items anew. */
template <class Change>
void change_request(Evas_Object* object, Change change) {
    vell::Widget* const widget = vell::find(object);
    if (widget == nullptr)
        return;
    change(widget->request);
    vell::items_box_changed(widget->holder);
}

bool is_policy(int policy) {
    using enum vell::ResizePolicy;
    return policy == static_cast<int>(keep) || policy == static_cast<int>(fit_content) ||
           policy == static_cast<int>(fill_parent);
}

} // namespace

void elm_vell_object_size_min_set(Evas_Object* object, int width, int height) {
    change_request(object, [=](vell::ItemRequest& request) { request.minimum = {width, height}; });
}

void elm_vell_object_resize_policy_set(Evas_Object* object, int horizontal, int vertical) {
    if (!is_policy(horizontal) || !is_policy(vertical))
        return;
    change_request(object, [=](vell::ItemRequest& request) {
        request.horizontal = static_cast<vell::ResizePolicy>(horizontal);
        request.vertical = static_cast<vell::ResizePolicy>(vertical);
    });
}

void elm_vell_object_weight_set(Evas_Object* object, double weight) {
    if (weight >= 0.0)
        change_request(object, [=](vell::ItemRequest& request) { request.weight = weight; });
}
