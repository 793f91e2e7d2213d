#include "widgets.h"

#include <span>

namespace simulator {
namespace {

void add(GVariantBuilder& widget, const char* key, GVariant* value) {
    g_variant_builder_add(&widget, "{sv}", key, value);
}

GVariant* flag(bool value) { return g_variant_new_boolean(value ? TRUE : FALSE); }

GVariant* to_tree(std::span<const Widget> widgets);

GVariant* to_dictionary(const Widget& widget, std::span<const Widget> children) {
    GVariantBuilder built;
    g_variant_builder_init(&built, G_VARIANT_TYPE_VARDICT);
    add(built, "name", g_variant_new_string(widget.name.c_str()));
    add(built, "role", g_variant_new_string(widget.role.c_str()));
    add(built, "focusable", flag(widget.focusable));
    add(built, "focused", flag(widget.focused));
    add(built, "enabled", flag(widget.enabled));
    if (widget.value) {
        add(built, "value", g_variant_new_double(widget.value->current));
        add(built, "lowest", g_variant_new_double(widget.value->lowest));
        add(built, "highest", g_variant_new_double(widget.value->highest));
    }
    add(built, "x", g_variant_new_int32(widget.x));
    add(built, "y", g_variant_new_int32(widget.y));
    add(built, "width", g_variant_new_int32(widget.width));
    add(built, "height", g_variant_new_int32(widget.height));
    if (!children.empty())
        add(built, "children", to_tree(children));
    return g_variant_builder_end(&built);
}

/** What follows a dialog is in it. */
GVariant* to_tree(std::span<const Widget> widgets) {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("aa{sv}"));
    for (std::size_t i = 0; i < widgets.size(); ++i) {
        const bool is_dialog = widgets[i].role == "dialog";
        const auto children = is_dialog ? widgets.subspan(i + 1) : widgets.first(0);
        g_variant_builder_add_value(&list, to_dictionary(widgets[i], children));
        if (is_dialog)
            break;
    }
    return g_variant_builder_end(&list);
}

} // namespace

GVariant* to_variant(const Screen& screen) { return to_tree(screen.widgets()); }

} // namespace simulator
