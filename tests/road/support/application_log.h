/** What the application has said on its log. */
#pragma once

#include <string>
#include <vector>

/** The file that the application's standard output and standard error go to. */
class ApplicationLog {
public:
    [[nodiscard]] const std::string& path() const { return path_; }

    /**
     * Its messages so far, "E dbus_client.cpp: Init > [b]": priority, file, operation, message; those of its
     * platform layer as "I platform > the main loop ends: SIGTERM". Process, line numbers and colours are
     * left out, and what the programs of the radio stack say.
     *
     * What differs from run to run is made the same: pointers read POINTER, bus names SENDER, a failed status
     * of the secure storage -N; a wait that had to look more than once stands there only with its end.
     */
    [[nodiscard]] std::vector<std::string> messages() const;

    /** How many messages contain a text. */
    [[nodiscard]] long count(const std::string& text) const;

    /** Lines in which EFL or GLib warns or reports an error. */
    [[nodiscard]] std::vector<std::string> complaints_of_libraries() const;

    /** The last lines of the application and of its platform layer, for the report of a failure. */
    [[nodiscard]] std::string end() const;

private:
    [[nodiscard]] std::vector<std::string> all() const;

    std::string path_ = "/tmp/application.log";
};
