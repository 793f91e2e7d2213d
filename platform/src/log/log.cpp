#include "platform/log.h"

#include "common/descriptor.h"
#include "log_journal.h"
#include "log_line.h"

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <glib.h>
#include <memory>
#include <string>
#include <string_view>
#include <unistd.h>

namespace platform {
namespace {

struct Free {
    void operator()(char* text) const { std::free(text); } // NOLINT(cppcoreguidelines-owning-memory)
};

/**
 * Keeps a reader of the log that went away from ending the process (SIGPIPE). With a handler instead of
 * ignoring it, for a program that is started inherits what is ignored.
 */
bool survive_broken_pipes() {
    struct sigaction former {};
    if (sigaction(SIGPIPE, nullptr, &former) < 0 || former.sa_handler != SIG_DFL)
        return false;
    struct sigaction nothing {};
    nothing.sa_handler = [](int) {};
    nothing.sa_flags = SA_RESTART;
    return sigaction(SIGPIPE, &nothing, nullptr) == 0;
}

/** Where TERM is not set, as on a television, the system need not be asked with every message. */
bool shows_colours() {
    const char* const type = std::getenv("TERM");
    return type != nullptr && std::string_view(type) != "dumb" && isatty(STDERR_FILENO) == 1;
}

int print(LogPriority priority, std::string_view tag, std::string_view message) {
    [[maybe_unused]] static const bool survives = survive_broken_pipes();
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
    char* text = nullptr;
    const int length = vasprintf(&text, format, arguments);
    va_end(arguments);
    if (length < 0) {
        const int failure = -errno;
        errno = callers_errno;
        return failure;
    }
    const std::unique_ptr<char, platform::Free> message(text);
    const int result = platform::print(priority, tag, {text, static_cast<std::size_t>(length)});
    errno = callers_errno;
    return result;
}
