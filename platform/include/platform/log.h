/**
 * The platform log.
 *
 * On a Linux PC a message is one line on standard error, `E/VELMORA(1234): dbus_client.cpp: Init(42) > [b]`, coloured
 * by priority on a terminal unless TERM is unset or "dumb". If standard error is the journal, the message goes there
 * with native fields.
 */
#pragma once

namespace platform {

/** Log buffers; applications use the main one. */
enum class LogBuffer { main = 0 };

/** Message priorities, in the platform's numbering. */
enum class LogPriority { verbose = 2, debug = 3, info = 4, warning = 5, error = 6, fatal = 7 };

} // namespace platform

/**
 * Writes one message.
 *
 * Each message is one line and one write, never truncated. A trailing line feed is dropped; other line feeds (`\n`),
 * control characters (`\x1b`) and invalid UTF-8 (`\xff`) are escaped. Writes to terminals and files are atomic, as are
 * writes of up to PIPE_BUF bytes to pipes. Writing to a closed pipe returns an error, because the first call
 * installs a handler for SIGPIPE. errno is preserved.
 *
 * @param buffer   the log buffer.
 * @param priority the message's priority.
 * @param tag      the source of the message, for example "VELMORA"; not null.
 * @param format   printf format of the message, not null, followed by its arguments.
 * @return the number of bytes written (in the journal, those of the message), or a negative errno value on failure.
 */
int __dlog_print(platform::LogBuffer buffer, platform::LogPriority priority, const char* tag,
                 const char* format, ...) __attribute__((format(printf, 4, 5)));
