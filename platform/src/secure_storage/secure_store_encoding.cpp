#include "secure_store.h"

#include <algorithm>
#include <glib.h>
#include <sodium.h>

namespace platform::secure {
namespace {

constexpr std::string_view mark = "PSSTORE2";
constexpr std::size_t hash_size = crypto_generichash_BYTES;

/** Name, owner and sealed bytes of each record. */
const GVariantType* records_type() { return G_VARIANT_TYPE("a(ayayay)"); }

using Hash = std::array<unsigned char, hash_size>;

Hash hash_of(ByteView bytes) {
    Hash hash{};
    crypto_generichash(hash.data(), hash.size(), bytes.data(), bytes.size(), nullptr, 0);
    return hash;
}

template <typename Range>
GVariant* byte_array(const Range& bytes) {
    return g_variant_new_fixed_array(G_VARIANT_TYPE_BYTE, bytes.data(), bytes.size(), 1);
}

ByteView bytes_of(GVariant* array) {
    gsize size = 0;
    const auto* const bytes = static_cast<const unsigned char*>(g_variant_get_fixed_array(array, &size, 1));
    return {bytes, size};
}

/** Nothing when the owner is not as long as owners are. */
std::optional<Record> record_of(GVariant* fields) {
    g_autoptr(GVariant) name = g_variant_get_child_value(fields, 0);
    g_autoptr(GVariant) owner = g_variant_get_child_value(fields, 1);
    g_autoptr(GVariant) sealed = g_variant_get_child_value(fields, 2);
    Record record;
    if (bytes_of(owner).size() != record.owner.size())
        return std::nullopt;
    std::ranges::copy(bytes_of(owner), record.owner.begin());
    record.name.assign(bytes_of(name).begin(), bytes_of(name).end());
    record.sealed.assign(bytes_of(sealed).begin(), bytes_of(sealed).end());
    return record;
}

} // namespace

Bytes encode(const Records& records) {
    GVariantBuilder builder;
    g_variant_builder_init(&builder, records_type());
    for (const Record& record : records)
        g_variant_builder_add(&builder, "(@ay@ay@ay)", byte_array(record.name), byte_array(record.owner),
                              byte_array(record.sealed));
    g_autoptr(GVariant) encoded = g_variant_ref_sink(g_variant_builder_end(&builder));
    Bytes bytes(mark.begin(), mark.end());
    const auto* const data = static_cast<const unsigned char*>(g_variant_get_data(encoded));
    bytes.insert(bytes.end(), data, data + g_variant_get_size(encoded));
    const Hash hash = hash_of(bytes);
    bytes.insert(bytes.end(), hash.begin(), hash.end());
    return bytes;
}

std::optional<Records> decode(ByteView file) {
    if (file.size() < mark.size() + hash_size)
        return std::nullopt;
    const ByteView hashed = file.first(file.size() - hash_size);
    if (!std::ranges::equal(hashed.first(mark.size()), mark) ||
        !std::ranges::equal(hash_of(hashed), file.last(hash_size)))
        return std::nullopt;
    const ByteView data = hashed.subspan(mark.size());
    g_autoptr(GVariant) encoded = g_variant_ref_sink(
        g_variant_new_from_data(records_type(), data.data(), data.size(), FALSE, nullptr, nullptr));
    if (!g_variant_is_normal_form(encoded))
        return std::nullopt;
    Records records;
    for (gsize i = 0; i < g_variant_n_children(encoded); ++i) {
        g_autoptr(GVariant) fields = g_variant_get_child_value(encoded, i);
        auto record = record_of(fields);
        if (!record)
            return std::nullopt;
        records.push_back(std::move(*record));
    }
    return records;
}

} // namespace platform::secure
