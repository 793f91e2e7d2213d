/** Options for a person at a terminal. */
#pragma once

namespace platform {

/** Answers "--help" or "--version" on standard output; false for every other argument, which is the application's. */
bool answer_option(const char* argument);

} // namespace platform
