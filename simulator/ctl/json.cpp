#include "json.h"

#include <json-glib/json-glib.h>
#include <memory>

namespace simulator {
namespace {

using Node = std::unique_ptr<JsonNode, decltype(&json_node_unref)>;
using Text = std::unique_ptr<char, decltype(&g_free)>;

std::string written(const Node& node) { return Text(json_to_string(node.get(), FALSE), g_free).get(); }

} // namespace

std::string json_of(GVariant* value) {
    g_autoptr(GVariant) held = g_variant_ref_sink(value);
    return written(Node(json_gvariant_serialize(held), json_node_unref));
}

} // namespace simulator
