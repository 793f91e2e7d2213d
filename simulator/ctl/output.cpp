#include "output.h"

#include "base/strings.h"

#include <json-glib/json-glib.h>

namespace simulator {
namespace {

/** The members of a list, or of the entries of a dictionary. */
std::vector<Value> members_of(GVariant* list) {
    std::vector<Value> members;
    GVariantIter each;
    g_variant_iter_init(&each, list);
    while (GVariant* const member = g_variant_iter_next_value(&each))
        members.emplace_back(member);
    return members;
}

std::string words_of_entries(GVariant* dictionary, bool texts_alone) {
    std::vector<std::string> words;
    for (const Value& entry : members_of(dictionary)) {
        const char* name = nullptr;
        g_autoptr(GVariant) value = nullptr;
        g_variant_get(entry.get(), "{&sv}", &name, &value);
        if (!texts_alone)
            words.push_back(std::string(name) + "=" + printed(value));
        else if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) != FALSE)
            words.push_back(printed(value));
    }
    return joined(words, " ");
}

} // namespace

std::string to_words(GVariant* value) {
    const std::string type = g_variant_get_type_string(value);
    if (type == "as")
        return joined(to_strings(value), " ");
    if (type == "a{sv}")
        return words_of_entries(value, false);
    if (type != "aa{sv}")
        return printed(value);
    std::vector<std::string> lines;
    for (const Value& dictionary : members_of(value))
        lines.push_back(words_of_entries(dictionary.get(), true));
    return joined(lines, " | ");
}

std::string to_json(GVariant* value) {
    const std::unique_ptr<JsonNode, decltype(&json_node_unref)> node(json_gvariant_serialize(value),
                                                                     json_node_unref);
    g_autofree char* text = json_to_string(node.get(), FALSE);
    return text;
}

} // namespace simulator
