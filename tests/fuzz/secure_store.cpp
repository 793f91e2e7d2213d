#include "secure_storage/secure_store.h"
#include "input.h"
#include "secure_storage/secure_record.h"

#include <glib.h>

// Corrects the checksum, which the fuzzer could not guess.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    using namespace platform::secure;
    g_autofree char* checksum = g_compute_checksum_for_data(G_CHECKSUM_SHA256, bytes, size);
    const std::string file = checksum + std::string(reinterpret_cast<const char*>(bytes), size);
    const auto records = decode(file);
    expect(records.has_value() && decode(encode(*records)) == records);
    for (const auto& [key, sealed] : *records)
        open(key.first, sealed, {}, std::string(32, 'a'));
    return 0;
}
