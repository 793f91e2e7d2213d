#include "strings.h"

#include <charconv>
#include <utility>

namespace simulator {

std::string joined(const std::vector<std::string>& words, const std::string& between) {
    std::string line;
    for (const auto& word : words)
        line += (line.empty() ? "" : between) + word;
    return line;
}

std::optional<int> parse_int(std::string_view text) {
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end ? std::optional(number) : std::nullopt;
}

std::vector<std::string> to_strings(GVariant* list) {
    gsize count = 0;
    g_autofree const char** texts = g_variant_get_strv(list, &count);
    return {texts, texts + count};
}

GVariant* to_variant(const std::vector<std::string>& texts) {
    std::vector<const char*> list;
    list.reserve(texts.size());
    for (const auto& text : texts)
        list.push_back(text.c_str());
    return g_variant_new_strv(list.data(), static_cast<gssize>(list.size()));
}

Value tuple_of(const std::string& text) {
    if (g_utf8_validate(text.c_str(), -1, nullptr) == FALSE)
        return nullptr; // GLib's parser requires valid UTF-8
    Value value(g_variant_parse(nullptr, text.c_str(), nullptr, nullptr, nullptr));
    return value && g_variant_is_of_type(value.get(), G_VARIANT_TYPE_TUPLE) != FALSE ? std::move(value)
                                                                                     : nullptr;
}

std::string printed(GVariant* value) {
    if (g_variant_is_of_type(value, G_VARIANT_TYPE_STRING) != FALSE)
        return g_variant_get_string(value, nullptr);
    g_autofree char* text = g_variant_print(value, FALSE);
    return text;
}

} // namespace simulator
