/** The logs of the television's components, /var/log/simulator/NAME.log. */
#pragma once

#include "owned.h"

#include <sstream>
#include <string>
#include <vector>

namespace simulator {

std::string log_path(const std::string& name);

/** The last lines of a log, separated by " / "; "its log is empty" without any. */
std::string end_of_log(const std::string& name);

/** The names of the logs that are there, in alphabetical order. */
std::vector<std::string> log_names();

/**
 * Writes lines "SECONDS MESSAGE" to a log, with the seconds since the machine's start, so that several logs can be read
 * side by side.
 */
class ComponentLog {
public:
    explicit ComponentLog(std::string name);

    /** Writes one line made of the parts. */
    void note(const auto&... parts) const { write_line(text_of(parts...), false); }
    /** Writes one line, and "NAME: MESSAGE" to standard error as well. */
    void error(const auto&... parts) const { write_line(text_of(parts...), true); }

private:
    static std::string text_of(const auto&... parts) {
        std::ostringstream text;
        (text << ... << parts);
        return text.str();
    }
    void write_line(const std::string& message, bool is_error) const;

    std::string name_;
    FileDescriptor file_;
};

} // namespace simulator
