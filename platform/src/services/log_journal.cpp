#include "log_journal.h"

#include "log_line.h"

#define SD_JOURNAL_SUPPRESS_LOCATION // the place in this file says nothing about the message's origin
#include <array>
#include <cstdlib>
#include <string>
#include <sys/uio.h>
#include <syslog.h>
#include <systemd/sd-journal.h>

namespace platform {
namespace {

int journal_priority(LogPriority priority) {
    switch (priority) {
    case LogPriority::verbose:
    case LogPriority::debug:
        return LOG_DEBUG;
    case LogPriority::info:
        return LOG_INFO;
    case LogPriority::warning:
        return LOG_WARNING;
    case LogPriority::fatal:
        return LOG_CRIT;
    case LogPriority::error:
        break;
    }
    return LOG_ERR;
}

iovec field(std::string& text) { return {text.data(), text.size()}; }

} // namespace

bool is_journal_stream(const struct stat& status) {
    const char* const stream = std::getenv("JOURNAL_STREAM");
    return stream != nullptr && std::to_string(status.st_dev) + ':' + std::to_string(status.st_ino) == stream;
}

int send_to_journal(LogPriority priority, std::string_view tag, std::string_view message) {
    std::string text = "MESSAGE=" + std::string(without_line_end(message));
    std::string level = "PRIORITY=" + std::to_string(journal_priority(priority));
    std::string identifier = "SYSLOG_IDENTIFIER=" + std::string(tag);
    const std::array<iovec, 3> fields{field(text), field(level), field(identifier)};
    return sd_journal_sendv(fields.data(), static_cast<int>(fields.size()));
}

} // namespace platform
