#include "input.h"
#include "log/log_line.h"
#include "toolkit/widgets/widget.h"

// The radio's statistics text is displayed unchanged and logged on one line.
int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string text = text_of(bytes, size);
    vell::markup(text.c_str());
    std::string line;
    platform::append_printable(line, text);
    expect(line.find('\n') == std::string::npos);
    return 0;
}
