#include "widget.h"

namespace vell {
namespace {

struct Record {
    static constexpr const char* key = "vell/widget";
    Widget widget;
};

} // namespace

Evas_Object* adopt(Evas_Object* object, Family family) {
    if (object != nullptr)
        attach<Record>(object).widget = Widget{family, object, {}};
    return object;
}

Widget* find(const Evas_Object* object) {
    auto* const record = attached<Record>(object);
    return record == nullptr ? nullptr : &record->widget;
}

Widget* find(const Evas_Object* object, Family family) {
    Widget* const widget = find(object);
    return widget != nullptr && widget->family == family ? widget : nullptr;
}

std::string markup(const char* text) {
    const std::unique_ptr<char, decltype(&std::free)> escaped(
        elm_entry_utf8_to_markup(text == nullptr ? "" : text), &std::free);
    return escaped == nullptr ? std::string() : std::string(escaped.get());
}

void point_weakly(Evas_Object*& place, Evas_Object* widget) {
    if (place != nullptr)
        efl_wref_del(place, &place);
    place = widget;
    if (place != nullptr)
        efl_wref_add(place, &place);
}

bool is_inside(const Evas_Object* widget, const Evas_Object* ancestor) {
    while (widget != nullptr && widget != ancestor)
        widget = elm_object_parent_widget_get(widget);
    return widget != nullptr;
}

} // namespace vell
