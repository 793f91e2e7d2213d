/**
 * Blocking helpers for processes, files and waiting.
 *
 * Command lines are passed to "/bin/sh -c" unchanged. A started process inherits the environment, the working
 * directory, the ignored signals, and the open descriptors except those that the platform marks close-on-exec. Started
 * processes are not tracked, but found by name.
 */
#pragma once

#include <string>

/**
 * Starts a command in the background.
 *
 * @return 1 if the child was created, even if its command cannot run; -1 (logged) if not.
 */
int exec_app(const char* command_line);

/**
 * Runs a command and waits for it.
 *
 * @return the wait status from `waitpid` (exit code 1 is 256); -1 (logged) if the child cannot be created or waited
 *         for.
 */
int exec_shell(const char* command_line);

/**
 * Waits until `pgrep` counts no process of this name: up to five counts, 300 ms apart. Does not report a process that
 * still runs after the last count.
 */
void get_command_result(const std::string& process_name);

/** Replaces a file's content; silently does nothing if the file cannot be opened. */
void write_file(const std::string& path, const std::string& content);

/**
 * Waits for a path to exist: up to 30 checks, 100 ms apart.
 *
 * @param make_report whether, after a time-out, to write the failure report and shut down.
 * @return 1 if the path exists, 0 after a time-out without a report.
 * @throw std::runtime_error "wait condition error" after a time-out with a report, once the report is written and the
 *        radio stack and the main loop are stopped.
 */
int wait_condition(const std::string& path, bool make_report);

/**
 * Writes the failure report for the factory line: the message to "/opt/data/BM/EW/result/iot_test_bin_result", and
 * "FAIL" to "/tmp/iot_test_result" and "/tmp/iot_factory_data". Gives the last file to the device's owner and labels
 * it "User::App::Shared". A failed step does not stop the others.
 */
void make_failure_report(const std::string& message);

/** Stops `zigbeed`, `socat` and `cpcd` in this order, and waits for each to exit. */
void kill_background_app();
