#include "secure_storage/secure_store.h"
#include "input.h"
#include "secure_storage/secure_record.h"

// Appends the correct hash, which the fuzzer could not guess.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace platform::secure;
    constexpr std::size_t hash_size = 32;
    std::string file(reinterpret_cast<const char*>(bytes), size);
    file += hash_of(file, hash_size);
    const auto records = decode(file);
    if (!records)
        return 0;
    expect(decode(encode(*records)) == records);
    for (const auto& [key, sealed] : *records)
        open(key.first, sealed, {}, std::string(32, 'a'));
    return 0;
}
