/** What the application has written on its log. */
#pragma once

#include <ios>
#include <string>
#include <vector>

namespace simulator {

/** The file that the application's standard output and standard error go to. */
class ApplicationLog {
public:
    [[nodiscard]] const std::string& path() const { return path_; }

    /**
     * Its messages, "E dbus_client.cpp: Init > [b]": priority, file, operation, message; those of its platform layer
     * as "I platform > the main loop ends: SIGTERM". Process and line numbers are left out, and the output of the
     * radio stack's programs; a failed status of the secure store reads -N.
     */
    [[nodiscard]] std::vector<std::string> messages() const;

    /** How many messages contain a text. */
    [[nodiscard]] long count(const std::string& text) const;

    /** Lines in which EFL or GLib warns or reports an error. */
    [[nodiscard]] std::vector<std::string> complaints_of_libraries() const;

protected:
    std::string path_ = "/var/log/simulator/application.log";
    std::streamoff begin_ = 0;
};

/** The log from now on. */
class LogFromNow : public ApplicationLog {
public:
    LogFromNow();
};

} // namespace simulator
