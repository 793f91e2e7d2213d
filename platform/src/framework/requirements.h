/** What an application cannot run without. */
#pragma once

#include "platform/application.h"

namespace platform {

/**
 * Looks for the display and for the toolkit's theme, while Elementary is up.
 *
 * @return `application_ok`, or the result for what is missing (logged).
 */
ApplicationResult check_requirements();

} // namespace platform
