#include "input.h"
#include "log/log_line.h"
#include "toolkit/widgets/widget.h"

// The radio's statistics text is displayed unchanged and logged on one line.
void fuzz(const std::string& input) {
    vell::markup(input.c_str());
    std::string line;
    platform::append_printable(line, input);
    expect(line.find('\n') == std::string::npos);
}
