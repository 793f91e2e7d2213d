/** What the application has said on its log. */
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
     * Its messages so far, "E dbus_client.cpp: Init > [b]": priority, file, operation, message; those of its
     * platform layer as "I platform > the main loop ends: SIGTERM". Process and line numbers are left out,
     * and what the programs of the radio stack say; a failed status of the secure store reads -N.
     */
    [[nodiscard]] std::vector<std::string> messages() const;

    /** How many messages contain a text. */
    [[nodiscard]] long count(const std::string& text) const;

    /** Lines in which EFL or GLib warns or reports an error. */
    [[nodiscard]] std::vector<std::string> complaints_of_libraries() const;

    /** The last messages, for the report of a failure. */
    [[nodiscard]] std::string end() const;

private:
    std::string path_ = "/var/log/simulator/application.log";
};

/** What the application writes from now on, as it stands: what was written before may be long. */
class LogFromNow {
public:
    LogFromNow();
    /** How many times a text is in it. */
    [[nodiscard]] long count(const std::string& text) const;

private:
    std::string path_ = ApplicationLog().path();
    std::streamoff begin_;
};

} // namespace simulator
