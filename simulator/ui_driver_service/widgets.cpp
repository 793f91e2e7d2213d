#include "widgets.h"

namespace simulator {
namespace {

void add_number(GVariantBuilder* widget, const char* key, int value) {
    g_variant_builder_add(widget, "{sv}", key, g_variant_new_int32(value));
}

void add_flag(GVariantBuilder* widget, const char* key, bool value) {
    g_variant_builder_add(widget, "{sv}", key, g_variant_new_boolean(value ? TRUE : FALSE));
}

GVariant* told(const Widget& widget, int parent) {
    GVariantBuilder told;
    g_variant_builder_init(&told, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&told, "{sv}", "name", g_variant_new_string(widget.name.c_str()));
    g_variant_builder_add(&told, "{sv}", "role", g_variant_new_string(widget.role.c_str()));
    add_flag(&told, "focusable", widget.focusable);
    add_flag(&told, "focused", widget.focused);
    add_flag(&told, "enabled", widget.enabled);
    if (widget.value) {
        g_variant_builder_add(&told, "{sv}", "value", g_variant_new_double(widget.value->current));
        g_variant_builder_add(&told, "{sv}", "lowest", g_variant_new_double(widget.value->lowest));
        g_variant_builder_add(&told, "{sv}", "highest", g_variant_new_double(widget.value->highest));
    }
    add_number(&told, "x", widget.x);
    add_number(&told, "y", widget.y);
    add_number(&told, "width", widget.width);
    add_number(&told, "height", widget.height);
    add_number(&told, "parent", parent);
    return g_variant_builder_end(&told);
}

} // namespace

GVariant* to_variant(const Screen& screen) {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("aa{sv}"));
    int dialog = -1;
    int index = 0;
    for (const Widget& widget : screen.widgets()) {
        g_variant_builder_add_value(&list, told(widget, dialog));
        if (widget.role == "dialog")
            dialog = index;
        ++index;
    }
    return g_variant_builder_end(&list);
}

} // namespace simulator
