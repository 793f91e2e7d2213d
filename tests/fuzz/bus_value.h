/** A tuple as it may come from the bus: its type is the input up to the first zero, its value what follows. */
#pragma once

#include "input.h"

#include <gio/gio.h>

/** Null when the input has no such type. */
inline GVariant* bus_value(const std::uint8_t* bytes, std::size_t size) {
    const std::string all = text_of(bytes, size);
    const std::string type = all.substr(0, all.find('\0'));
    if (type.size() == all.size() || !g_variant_type_string_is_valid(type.c_str()) || type.front() != '(' ||
        !g_variant_type_is_definite(G_VARIANT_TYPE(type.c_str())))
        return nullptr;
    const std::string value = all.substr(type.size() + 1);
    g_autoptr(GBytes) data = g_bytes_new(value.data(), value.size());
    return g_variant_ref_sink(g_variant_new_from_bytes(G_VARIANT_TYPE(type.c_str()), data, FALSE));
}
