#include "input.h"
#include "radio/protocol.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    simulator::LineBuffer buffer;
    buffer.append(text_of(bytes, size));
    while (const auto line = buffer.next()) {
        if (const auto request = simulator::parse_request(*line))
            expect(simulator::parse_request(
                       simulator::to_line(*request).substr(0, simulator::to_line(*request).size() - 1))
                       .has_value());
        if (const auto answer = simulator::parse_answer(*line))
            simulator::to_line(*answer);
    }
    return 0;
}
