/** The log's way into the journal. */
#pragma once

#include "platform/log.h"

#include <string_view>

namespace platform {

/**
 * Sends one message to the journal, with its priority, tag and text as the journal's own fields.
 *
 * @return whether the journal took it.
 */
bool send_to_journal(LogPriority priority, std::string_view tag, std::string_view message);

} // namespace platform
