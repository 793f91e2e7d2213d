#include "input.h"
#include "radio/protocol.h"

void fuzz(const std::string& input) {
    simulator::LineBuffer buffer;
    buffer.append(input);
    while (const auto line = buffer.next()) {
        if (const auto request = simulator::parse_request(*line)) {
            const std::string again = simulator::to_line(*request);
            expect(simulator::parse_request(again.substr(0, again.size() - 1)).has_value());
        }
        if (const auto answer = simulator::parse_answer(*line))
            simulator::to_line(*answer);
    }
}
