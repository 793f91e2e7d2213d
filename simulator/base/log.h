/** The logs of the components, /var/log/simulator/NAME.log. */
#pragma once

#include "owned.h"

#include <sstream>
#include <string>
#include <vector>

namespace simulator {

std::string log_path(const std::string& name);

/** Returns the last lines of a log, separated by " / ", or "its log is empty". */
std::string end_of_log(const std::string& name);

/** Returns the names of the existing logs in alphabetical order. */
std::vector<std::string> log_names();

/**
 * Writes lines "SECONDS MESSAGE" to a log; the seconds are monotonic time, so several logs can be compared.
 */
class ComponentLog {
public:
    explicit ComponentLog(std::string name);

    /** Writes one line, the concatenated parts. */
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
