#include "input.h"
#include "ncp_host/ncp_host.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    simulator::parse_behaviour(text_of(bytes, size));
    return 0;
}
