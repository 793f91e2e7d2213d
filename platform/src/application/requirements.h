/** What an application cannot run without. */
#pragma once

#include "platform/application.h"

namespace platform {

class XConnection;

/**
 * Looks for the toolkit's theme, and whether the display answered.
 *
 * @return `application_ok`, or the result for what is missing (logged).
 */
ApplicationResult check_requirements(const XConnection& display);

} // namespace platform
