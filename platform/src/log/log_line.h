/** The text form of a log message. */
#pragma once

#include "platform/log.h"

#include <string>
#include <string_view>

namespace platform {

/** Returns the message without one trailing line feed. */
std::string_view without_line_end(std::string_view message);

/**
 * Appends text so that it can be shown safely on one line of a terminal.
 *
 * A line feed, carriage return or tab becomes `\n`, `\r` or `\t`, another control character `\x1b` or (above ASCII)
 * `\u009b`, and so do line separators and the marks that change the writing direction; a byte that is not UTF-8
 * becomes `\xff`. Everything else stays.
 */
void append_printable(std::string& line, std::string_view text);

/** One line `E/TAG(process): message`, line feed included, in the priority's colour when `coloured`. */
std::string log_line(LogPriority priority, std::string_view tag, std::string_view message, bool coloured);

} // namespace platform
