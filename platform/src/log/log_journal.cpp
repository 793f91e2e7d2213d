#include "log_journal.h"

#include "log_line.h"

#include <array>
#include <glib.h>
#include <string>
#include <syslog.h>

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

GLogField field(const char* key, std::string_view value) {
    return {.key = key, .value = value.data(), .length = static_cast<gssize>(value.size())};
}

} // namespace

bool send_to_journal(LogPriority priority, std::string_view tag, std::string_view message) {
    const std::string level = std::to_string(journal_priority(priority));
    const std::array fields{field("MESSAGE", without_line_end(message)), field("PRIORITY", level),
                            field("SYSLOG_IDENTIFIER", tag)};
    return g_log_writer_journald(G_LOG_LEVEL_MESSAGE, fields.data(), fields.size(), nullptr) ==
           G_LOG_WRITER_HANDLED;
}

} // namespace platform
