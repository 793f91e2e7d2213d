#include "secure_storage/secure_store.h"
#include "input.h"
#include "secure_storage/secure_record.h"

// Appends the correct hash, which the fuzzer could not guess.
void fuzz(const std::string& input) {
    using namespace platform::secure;
    constexpr std::size_t hash_size = 32;
    const auto records = decode(input + hash_of(input, hash_size));
    if (!records)
        return;
    expect(decode(encode(*records)) == records);
    for (const auto& [key, sealed] : *records)
        open(key.first, sealed, {}, std::string(32, 'a'));
}
