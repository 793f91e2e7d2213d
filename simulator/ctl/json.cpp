#include "json.h"

#include <json-glib/json-glib.h>
#include <memory>

namespace simulator {
namespace {

using Node = std::unique_ptr<JsonNode, decltype(&json_node_unref)>;
using Text = std::unique_ptr<char, decltype(&g_free)>;

std::string written(const Node& node) { return Text(json_to_string(node.get(), FALSE), g_free).get(); }

JsonArray* children_of(JsonObject* dialog) {
    if (json_object_has_member(dialog, "children") == FALSE)
        json_object_set_array_member(dialog, "children", json_array_new());
    return json_object_get_array_member(dialog, "children");
}

} // namespace

std::string json_of(GVariant* value) {
    g_autoptr(GVariant) held = g_variant_ref_sink(value);
    return written(Node(json_gvariant_serialize(held), json_node_unref));
}

std::string tree_of(GVariant* widgets) {
    const Node list(json_gvariant_serialize(widgets), json_node_unref);
    JsonArray* const all = json_node_get_array(list.get());
    const Node tree(json_node_new(JSON_NODE_ARRAY), json_node_unref);
    json_node_take_array(tree.get(), json_array_new());
    for (guint index = 0; index < json_array_get_length(all); ++index) {
        JsonObject* const widget = json_array_get_object_element(all, index);
        const auto parent = json_object_get_int_member(widget, "parent");
        json_object_remove_member(widget, "parent");
        JsonArray* const place =
            parent < 0 ? json_node_get_array(tree.get())
                       : children_of(json_array_get_object_element(all, static_cast<guint>(parent)));
        json_array_add_object_element(place, json_object_ref(widget));
    }
    return written(tree);
}

} // namespace simulator
