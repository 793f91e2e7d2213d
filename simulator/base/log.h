/** The logs of the television's components, /var/log/simulator/NAME.log. */
#pragma once

#include "file_descriptor.h"

#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace simulator {

/**
 * Writes lines "SECONDS MESSAGE" to /var/log/simulator/NAME.log, the seconds being those since the machine's
 * start, so that the logs of several programs can be read side by side. Without that folder lines go to
 * standard error.
 */
class ComponentLog {
public:
    explicit ComponentLog(std::string name);

    /** Writes one line made of the parts. */
    template <typename... Parts>
    void note(const Parts&... parts) const {
        write_line(joined(parts...), false);
    }

    /** Writes one line, and "NAME: MESSAGE" to standard error as well. */
    template <typename... Parts>
    void error(const Parts&... parts) const {
        write_line(joined(parts...), true);
    }

private:
    template <typename... Parts>
    static std::string joined(const Parts&... parts) {
        std::ostringstream text;
        (text << ... << parts);
        return text.str();
    }
    void write_line(std::string_view message, bool is_error) const;

    std::string name_;
    FileDescriptor file_;
};

std::string log_path(const std::string& name);

/** The last lines of a log, separated by " / "; "its log is empty" without any. */
std::string end_of_log(const std::string& name);

/** The names of the logs that are there, in alphabetical order. */
std::vector<std::string> log_names();

} // namespace simulator
