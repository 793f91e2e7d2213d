/** One process for each application. */
#pragma once

#include <functional>
#include <gio/gio.h>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/** The name on the session bus of the program started as `program`: its file name, made safe for a bus name. */
std::string application_id(std::string_view program);

/** What is to become of a process that was started. */
enum class LaunchOutcome {
    runs,    /**< it is the application's one process, as far as is known */
    reached, /**< another one is, and has taken the launch */
    held_up, /**< another one is ending, and does not come to its end */
};

/**
 * Holds the application's name on the session bus, or hands the launch to the process that holds it.
 *
 * Later launches come in as calls of org.freedesktop.Application.Activate. GIO's worker thread answers them,
 * so that the process may be as busy as it likes: accepted, or refused because it is ending. A process that
 * was refused waits in the bus's queue for the name. (GApplication asks the first process for
 * its actions and waits for the answer, measured: with a busy one a second would come up.)
 *
 * A bus that is silent for a second holds the start up no longer: the process runs, and has the name when the
 * bus answers, or when another process that has it by then is gone.
 */
class SingleInstance {
public:
    /**
     * Asks for the name, without waiting. One of these lives at a time.
     *
     * @param program  the path or name the program was started as.
     * @param launched called from GLib's default context at every later launch.
     */
    SingleInstance(std::string_view program, std::function<void()> launched);
    /** GLib's default context is not dispatched after it. The bus takes the name back when the process has gone. */
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    /** Dispatches GLib's default context until the outcome is known. */
    LaunchOutcome settle();

    /** From now on launches are refused: this process is ending. */
    static void refuse_launches();

private:
    void decide(LaunchOutcome outcome);
    void watch_owner(GDBusConnection* bus);
    void hand_launch_to(GDBusConnection* bus, const char* owner);

    std::string id_;
    unsigned watch_ = 0;          /**< of the name, when another process has it at first */
    bool is_other_there_ = false; /**< the launch was handed to it */
    std::optional<LaunchOutcome> outcome_;
};

} // namespace platform
