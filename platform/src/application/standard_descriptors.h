/** Standard input, output and error, and which descriptors a started program inherits. */
#pragma once

namespace platform {

/**
 * Opens those that the process was started without on the null device. Else the next file or connection that is
 * opened takes their number, and gets what is meant for the log. Before anything else is opened.
 */
void open_missing_standard_descriptors();

/**
 * From now on a program that is started with fork(2) and exec gets the standard descriptors alone: before each fork the
 * others, those of libraries included, are marked close-on-exec.
 */
void keep_descriptors_from_children();

} // namespace platform
