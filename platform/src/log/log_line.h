/** The text form of a log message. */
#pragma once

#include "platform/log.h"

#include <string>
#include <string_view>

namespace platform {

/** Returns the message without one trailing line feed. */
std::string_view without_line_end(std::string_view message);

/**
 * Appends text in a form that is safe to print on one terminal line.
 *
 * Escapes line feeds, carriage returns and tabs as `\n`, `\r` and `\t`, other control characters as `\x1b` or (above
 * ASCII) `\u009b`, line separators and marks that change the text direction like the latter, and invalid UTF-8 as
 * `\xff`.
 */
void append_printable(std::string& line, std::string_view text);

/** Formats the line `E/TAG(process): message`, including the line feed, if `coloured` in the priority's colour. */
std::string log_line(LogPriority priority, std::string_view tag, std::string_view message, bool coloured);

} // namespace platform
