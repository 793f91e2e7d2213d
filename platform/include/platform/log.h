/**
 * The platform log.
 *
 * On an ordinary Linux machine a message is one line on standard error,
 * `E/VELMORA(1234): dbus_client.cpp: Init(42) > [b]`, coloured by priority on a terminal (unless TERM is not set,
 * or "dumb"); when standard error is the journal it goes there with the journal's own fields instead.
 */
#pragma once

namespace platform {

/** The log's buffers; an application writes to the main one. */
enum class LogBuffer { main = 0 };

/** Priorities of a message, in the platform's numbering. */
enum class LogPriority { verbose = 2, debug = 3, info = 4, warning = 5, error = 6, fatal = 7 };

} // namespace platform

/**
 * Writes one message.
 *
 * A message is one line and one write: a line feed at its end is dropped, one inside it is shown as `\n`, and
 * so are other control characters (`\x1b`) and bytes that are not UTF-8 (`\xff`). It is never cut. Terminals
 * and files take a line whole, and so do pipes one of at most PIPE_BUF bytes. A reader that went away is an
 * error, not a signal (which is caught from the first message on); errno is left as it was.
 *
 * @param buffer   the log buffer.
 * @param priority the message's priority.
 * @param tag      who speaks, for example "VELMORA"; not null.
 * @param format   printf format of the message, then its arguments; not null.
 * @return the number of bytes written (of the message alone in the journal), or a negative errno value when
 * the line could not be written.
 */
int __dlog_print(platform::LogBuffer buffer, platform::LogPriority priority, const char* tag,
                 const char* format, ...) __attribute__((format(printf, 4, 5)));
