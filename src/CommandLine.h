/** What the command line asks for: help, the version, or the application. */
#pragma once

#include <optional>

/**
 * Answers the options of the command line, before anything of the application is up.
 *
 * `--help` and `--version` are answered on standard output, an unknown option with one line on standard error.
 * Arguments that are no options are the launcher's and left alone.
 *
 * @param argv the process's arguments up to a null pointer, left as they are.
 * @return the status to end the process with: 0 after an answer, 2 after an unknown option; nothing when the
 * application is to run.
 */
std::optional<int> answerCommandLine(char** argv);
