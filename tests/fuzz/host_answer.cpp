#include "host/behaviour.h"
#include "input.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    station::parse_behaviour(text_of(bytes, size));
    return 0;
}
