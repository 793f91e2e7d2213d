/** The application's log. */
#pragma once

#include <ios>
#include <string>
#include <vector>

namespace simulator {

/** The file with the standard output and standard error of the application and of the radio programs. */
class ApplicationLog {
public:
    [[nodiscard]] const std::string& path() const { return path_; }

    /** Ignores the lines so far. */
    void skip();

    [[nodiscard]] std::vector<std::string> lines() const;

    /**
     * The application's messages as "PRIORITY FILE: OPERATION > TEXT", for example "E dbus_client.cpp: Init > [b]"; the
     * messages of its platform layer as "PRIORITY PLATFORM > TEXT".
     */
    [[nodiscard]] std::vector<std::string> messages() const;

    /** Returns how many messages contain a text. */
    [[nodiscard]] long count(const std::string& text) const;

    /** Returns the warnings and errors of EFL and GLib. */
    [[nodiscard]] std::vector<std::string> library_warnings() const;

private:
    std::string path_ = "/var/log/simulator/application.log";
    std::streamoff begin_ = 0;
};

} // namespace simulator
