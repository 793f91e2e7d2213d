/** Formats answers as text or JSON. */
#pragma once

#include "base/strings.h"

#include <json-glib/json-glib.h>

namespace simulator {

/** The elements of a list or entries of a dictionary. */
inline std::vector<Value> members_of(GVariant* list) {
    std::vector<Value> members;
    for (gsize i = 0; i < g_variant_n_children(list); ++i)
        members.emplace_back(g_variant_get_child_value(list, i));
    return members;
}

/** "NAME=VALUE" for each entry of a dictionary, or only the values that are strings. */
inline std::string words_of_entries(GVariant* dictionary, bool strings_only) {
    std::vector<std::string> words;
    for (const Value& entry : members_of(dictionary)) {
        const char* name = nullptr;
        g_autoptr(GVariant) value = nullptr;
        g_variant_get(entry.get(), "{&sv}", &name, &value);
        if (!strings_only)
            words.push_back(std::string(name) + "=" + printed(value));
        else if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) != FALSE)
            words.push_back(printed(value));
    }
    return joined(words, " ");
}

/**
 * Formats a value on one line: a string unchanged, a list of strings separated by spaces, a dictionary as "NAME=VALUE"
 * words, and a list of dictionaries as the strings in each dictionary, separated by " | ".
 */
inline std::string to_words(GVariant* value) {
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

inline std::string to_json(GVariant* value) {
    const std::unique_ptr<JsonNode, Release<json_node_unref>> node(json_gvariant_serialize(value));
    g_autofree char* text = json_to_string(node.get(), FALSE);
    return text;
}

} // namespace simulator
