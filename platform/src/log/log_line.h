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
 * Escapes line feeds, carriage returns and tabs as `\n`, `\r` and `\t`. Escapes other ASCII control characters and
 * invalid UTF-8 bytes in the form `\x1b`, and other control characters, line separators and bidirectional control
 * characters in the form `\u009b`.
 */
void append_printable(std::string& line, std::string_view text);

/** Formats the line `E/TAG(process): message` with a line feed, and in the priority's colour if `coloured`. */
std::string log_line(LogPriority priority, std::string_view tag, std::string_view message, bool coloured);

} // namespace platform
