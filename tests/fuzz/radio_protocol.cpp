#include "common/radio_protocol.h"
#include "input.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    station::LineBuffer buffer;
    buffer.append(text_of(bytes, size));
    while (const auto line = buffer.next()) {
        if (const auto request = station::parse_request(*line))
            expect(station::parse_request(
                       station::to_line(*request).substr(0, station::to_line(*request).size() - 1))
                       .has_value());
        if (const auto answer = station::parse_answer(*line))
            station::to_line(*answer);
    }
    return 0;
}
