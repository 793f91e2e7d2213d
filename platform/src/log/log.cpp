#include "platform/log.h"

#include "common/descriptor.h"
#include "log_line.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <glib.h>
#include <string>
#include <string_view>
#include <syslog.h>

namespace platform {
namespace {

/** Returns the syslog priority for a message priority; LOG_ERR for an unknown one. */
int journal_priority(LogPriority priority) {
    constexpr std::array priorities{LOG_DEBUG, LOG_DEBUG, LOG_INFO, LOG_WARNING, LOG_ERR, LOG_CRIT};
    const auto index = static_cast<std::size_t>(priority) - static_cast<std::size_t>(LogPriority::verbose);
    return index < priorities.size() ? priorities[index] : LOG_ERR;
}

/** Sends one message to the journal with native fields. @return whether that succeeded. */
bool send_to_journal(LogPriority priority, std::string_view tag, std::string_view message) {
    const auto field = [](const char* key, std::string_view value) {
        return GLogField{.key = key, .value = value.data(), .length = static_cast<gssize>(value.size())};
    };
    const std::string level = std::to_string(journal_priority(priority));
    const std::array fields{field("MESSAGE", without_line_end(message)), field("PRIORITY", level),
                            field("SYSLOG_IDENTIFIER", tag)};
    return g_log_writer_journald(G_LOG_LEVEL_MESSAGE, fields.data(), fields.size(), nullptr) ==
           G_LOG_WRITER_HANDLED;
}

/** Without TERM, as on a television, this needs no system call. */
bool shows_colours() {
    const char* const type = std::getenv("TERM");
    return type != nullptr && std::string_view(type) != "dumb" && isatty(STDERR_FILENO) == 1;
}

/** Handles SIGPIPE, unless the parent process ignored it. Unlike SIG_IGN, a handler is not inherited across exec. */
bool survive_closed_pipe() {
    struct sigaction inherited {};
    return sigaction(SIGPIPE, nullptr, &inherited) == 0 && inherited.sa_handler == SIG_DFL &&
           std::signal(SIGPIPE, [](int) {}) != SIG_ERR;
}

int print(LogPriority priority, std::string_view tag, std::string_view message) {
    [[maybe_unused]] static const bool survives = survive_closed_pipe();
    if (g_log_writer_is_journald(STDERR_FILENO) != FALSE && send_to_journal(priority, tag, message))
        return static_cast<int>(message.size());
    const std::string line = log_line(priority, tag, message, shows_colours());
    const int result = write_all(STDERR_FILENO, line);
    return result < 0 ? result : static_cast<int>(line.size());
}

} // namespace
} // namespace platform

int __dlog_print(platform::LogBuffer /*buffer*/, platform::LogPriority priority, const char* tag,
                 const char* format, ...) {
    if (tag == nullptr || format == nullptr)
        return -EINVAL;
    const int callers_errno = errno;
    va_list arguments;
    va_start(arguments, format);
    g_autofree char* message = g_strdup_vprintf(format, arguments);
    va_end(arguments);
    const int result = message ? platform::print(priority, tag, message) : -EINVAL;
    errno = callers_errno;
    return result;
}
