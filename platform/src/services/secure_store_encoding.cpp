#include "secure_store.h"

#include <algorithm>
#include <sodium.h>

namespace platform::secure {
namespace {

constexpr std::string_view mark = "PSSTORE1";
constexpr std::size_t hash_size = crypto_generichash_BYTES;

using Hash = std::array<unsigned char, hash_size>;

Hash hash_of(ByteView bytes) {
    Hash hash{};
    crypto_generichash(hash.data(), hash.size(), bytes.data(), bytes.size(), nullptr, 0);
    return hash;
}

template <typename Range>
void append(Bytes& bytes, const Range& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void append_size(Bytes& bytes, std::size_t size) {
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<unsigned char>(size >> shift));
}

/** Takes pieces off the front of bytes; asked for more than there is it fails, and stays failed. */
class Reader {
public:
    explicit Reader(ByteView bytes) : bytes_(bytes) {}

    ByteView take(std::size_t size) {
        failed_ = failed_ || size > bytes_.size();
        if (failed_)
            return {};
        const ByteView piece = bytes_.first(size);
        bytes_ = bytes_.subspan(size);
        return piece;
    }

    std::size_t take_size() {
        std::size_t size = 0;
        unsigned shift = 0;
        for (const unsigned char byte : take(4)) {
            size |= static_cast<std::size_t>(byte) << shift;
            shift += 8;
        }
        return size;
    }

    [[nodiscard]] bool failed() const { return failed_; }
    [[nodiscard]] bool done() const { return bytes_.empty(); }

private:
    ByteView bytes_;
    bool failed_ = false;
};

Record take_record(Reader& reader) {
    Record record;
    const std::size_t name_size = reader.take_size();
    const std::size_t sealed_size = reader.take_size();
    const ByteView name = reader.take(name_size);
    record.name.assign(name.begin(), name.end());
    std::ranges::copy(reader.take(record.owner.size()), record.owner.begin());
    const ByteView sealed = reader.take(sealed_size);
    record.sealed.assign(sealed.begin(), sealed.end());
    return record;
}

} // namespace

Bytes encode(const Records& records) {
    Bytes bytes(mark.begin(), mark.end());
    for (const Record& record : records) {
        append_size(bytes, record.name.size());
        append_size(bytes, record.sealed.size());
        append(bytes, record.name);
        append(bytes, record.owner);
        append(bytes, record.sealed);
    }
    append(bytes, hash_of(bytes));
    return bytes;
}

std::optional<Records> decode(ByteView file) {
    if (file.size() < mark.size() + hash_size)
        return std::nullopt;
    const ByteView hashed = file.first(file.size() - hash_size);
    if (!std::ranges::equal(hashed.first(mark.size()), mark) ||
        !std::ranges::equal(hash_of(hashed), file.last(hash_size)))
        return std::nullopt;
    Reader reader(hashed.subspan(mark.size()));
    Records records;
    while (!reader.done() && !reader.failed())
        records.push_back(take_record(reader));
    return reader.failed() ? std::nullopt : std::optional(std::move(records));
}

} // namespace platform::secure
