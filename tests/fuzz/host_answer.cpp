#include "input.h"
#include "ncp_host/behaviour.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    simulator::parse_behaviour(text_of(bytes, size));
    return 0;
}
