/**
 * Processes, files and waiting: small operations that block the calling thread.
 *
 * Command lines go to "/bin/sh -c" as they stand. A started process inherits the environment, the working
 * directory, the open descriptors and the ignored signals; the platform marks its own descriptors and those
 * of its libraries close-on-exec. Nothing remembers a started process: it is found again by its name.
 */
#pragma once

#include <string>

/**
 * Starts a command in the background.
 *
 * @return 1 when the child was created, whether or not its command can run; -1 (logged) when it was not.
 */
int exec_app(const char* command_line);

/**
 * Runs a command to its end.
 *
 * @return the child's wait status as `waitpid` gives it (exit code 1 is 256); -1 (logged) when the child
 * could not be created or waited for.
 */
int exec_shell(const char* command_line);

/**
 * Waits until `pgrep` counts no process of the name: at most five counts, 300 ms after each. A process that
 * outlasts them is not reported.
 */
void get_command_result(const std::string& process_name);

/** Replaces a file's whole content, byte for byte; a file that cannot be opened is left out silently. */
void write_file(const std::string& path, const std::string& content);

/**
 * Waits for a path to exist: at most 30 tests, 100 ms after each.
 *
 * @param make_report whether a time-out is reported to the factory line and ends the application.
 * @return 1 when the path exists, 0 after a time-out without a report.
 * @throw std::runtime_error "wait condition error" after a time-out with a report: the report is written, the
 *        radio stack stopped and the main loop asked to quit.
 */
int wait_condition(const std::string& path, bool make_report);

/**
 * Writes the factory line's failure report: the message to "/opt/data/BM/EW/result/iot_test_bin_result", and
 * "FAIL" to "/tmp/iot_test_result" and "/tmp/iot_factory_data"; the last is given to the device's owner and
 * labelled "User::App::Shared". A step that fails does not stop the others.
 */
void make_failure_report(const std::string& message);

/** Stops the radio stack, `zigbeed`, `socat` and `cpcd` in this order, and waits for each to be gone. */
void kill_background_app();
