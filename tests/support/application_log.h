/** The application's log. */
#pragma once

#include <ios>
#include <string>
#include <vector>

namespace simulator {

/** The file that contains the application's standard output and standard error. */
class ApplicationLog {
public:
    [[nodiscard]] const std::string& path() const { return path_; }

    /**
     * Its messages as "E dbus_client.cpp: Init > [b]" (priority, file, operation, message) or, from its platform layer,
     * as "I platform > the main loop ends: SIGTERM". Omits process IDs, line numbers and the output of the
     * radio programs; a failed status of the secure store becomes -N.
     */
    [[nodiscard]] std::vector<std::string> messages() const;

    /** Returns how many messages contain a text. */
    [[nodiscard]] long count(const std::string& text) const;

    /** Returns the warnings and errors of EFL and GLib. */
    [[nodiscard]] std::vector<std::string> library_warnings() const;

protected:
    std::string path_ = "/var/log/simulator/application.log";
    std::streamoff begin_ = 0;
};

/** The part of the log after this object's creation. */
class LogFromNow : public ApplicationLog {
public:
    LogFromNow();
};

} // namespace simulator
