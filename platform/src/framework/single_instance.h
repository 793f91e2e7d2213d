/** One process for each application. */
#pragma once

#include "object_pointer.h"

#include <functional>
#include <gio/gio.h>
#include <string>
#include <string_view>

namespace platform {

/** The name on the session bus of the program started as `program`: its file name, made safe for a bus name.
 */
std::string application_id(std::string_view program);

/**
 * Holds the application's name on the session bus, or hands the launch to the process that holds it.
 *
 * Later launches come in as calls of org.freedesktop.Application.Activate. GApplication does the same, but a
 * remote one asks the first process for its actions and waits for the answer (measured): with the first
 * process busy in a long callback a second would come up. Here nothing is asked of the first process, so it
 * may be as busy as it likes.
 */
class SingleInstance {
public:
    /**
     * Takes the name, or finds that it is taken. Without a bus that answers in time the process counts as the
     * first.
     *
     * @param session_bus where the names are kept; may be null.
     * @param program     the path or name the program was started as.
     * @param launched    called from GLib's default context at every later launch.
     */
    SingleInstance(GDBusConnection* session_bus, std::string_view program, std::function<void()> launched);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /** Whether another process has the name; the launch has then been sent to it. */
    [[nodiscard]] bool launched_elsewhere() const { return launched_elsewhere_; }

private:
    void listen();
    [[nodiscard]] bool take_name() const;
    void launch_owner() const;

    std::function<void()> launched_;
    ObjectPointer<GDBusConnection> bus_;
    std::string id_;
    std::string path_;
    unsigned registration_ = 0;
    bool launched_elsewhere_ = false;
};

} // namespace platform
