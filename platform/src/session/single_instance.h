/** One process for each application. */
#pragma once

#include "application/object_pointer.h"

#include <chrono>
#include <functional>
#include <gio/gio.h>
#include <memory>
#include <string>
#include <string_view>

namespace platform {

/** The name on the session bus of the program started as `program`: its file name, made safe for a bus name. */
std::string application_id(std::string_view program);

/** What is to become of a process that was started. */
enum class LaunchOutcome {
    runs,    /**< it is the application's one process */
    reached, /**< another one is, and has taken the launch */
    held_up, /**< another one is ending, and does not come to its end */
};

/** The launches that reach this process. */
class Launches;

/**
 * Holds the application's name on the session bus, or hands the launch to the process that holds it.
 *
 * Later launches come in as calls of org.freedesktop.Application.Activate. GIO's worker thread answers them,
 * so that the process may be as busy as it likes: accepted, or refused because it is ending. A process that
 * was refused waits until the other is gone, and then tries anew. (GApplication asks the first process for
 * its actions and waits for the answer, measured: with a busy one a second would come up.)
 */
class SingleInstance {
public:
    /**
     * Takes the name, or finds that it is taken. Without a bus that answers the process counts as the first.
     *
     * @param session_bus where the names are kept; may be null.
     * @param program     the path or name the program was started as.
     * @param launched    called from GLib's default context at every later launch.
     */
    SingleInstance(GDBusConnection* session_bus, std::string_view program, std::function<void()> launched);
    /** Gives the name back. */
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    [[nodiscard]] LaunchOutcome outcome() const { return outcome_; }

    /** Whether there is a bus that answered. */
    [[nodiscard]] bool has_bus() const { return bus_ != nullptr; }

    /** From now on launches are refused: this process is ending. */
    void refuse_launches();

private:
    [[nodiscard]] LaunchOutcome settle();
    [[nodiscard]] bool take_name();
    [[nodiscard]] bool launch_owner() const;

    std::string id_;
    ObjectPointer<GDBusConnection> bus_;
    std::shared_ptr<Launches> launches_;
    unsigned filter_ = 0;
    LaunchOutcome outcome_ = LaunchOutcome::runs;
};

} // namespace platform
