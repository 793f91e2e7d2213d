#include "secure_storage/secure_store.h"
#include "input.h"

#include <sodium.h>

// The hash at the end is made to fit, or the fuzzer would never come past it.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace platform::secure;
    Bytes file(bytes, bytes + size);
    Bytes hash(crypto_generichash_BYTES);
    crypto_generichash(hash.data(), hash.size(), file.data(), file.size(), nullptr, 0);
    file.insert(file.end(), hash.begin(), hash.end());
    if (const auto records = decode(file)) {
        expect(encode(*records) == file);
        for (const Record& record : *records)
            open(record, {}, std::string(32, 'a'));
    }
    return 0;
}
