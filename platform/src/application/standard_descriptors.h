/** Standard input, output and error. */
#pragma once

namespace platform {

/**
 * Opens those that the process was started without on the null device. Else the next file or connection that is
 * opened takes their number, and gets what is meant for the log. Before anything else is opened.
 */
void open_missing_standard_descriptors();

} // namespace platform
