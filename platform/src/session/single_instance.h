/** One process for each application. */
#pragma once

#include <functional>
#include <gio/gio.h>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/** What becomes of a process that was started. */
enum class LaunchOutcome {
    runs,    /**< it is the application's one process, as far as is known */
    reached, /**< another process runs, and has taken the launch */
    held_up, /**< another process is ending, and does not come to its end */
};

/**
 * Holds the application's name on the session bus, or passes the launch to the process that holds it.
 *
 * Later launches come in as calls of org.freedesktop.Application.Activate. A process that is busy takes them when it
 * has time. One that is ending keeps the name but no longer has the object, so GDBus's own thread refuses the call at
 * once, and the process that called waits in the bus's queue for the name. (GApplication asks the first process for
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
     * @param launched called from GLib's default context at every later launch, which is not dispatched when this is
     * gone; the bus takes the name back when the process has gone.
     */
    SingleInstance(std::string_view program, std::function<void()> launched);

    /** Dispatches GLib's default context until the outcome is known. */
    LaunchOutcome settle();

    /** From now on launches are refused: this process is ending. */
    void refuse_launches();

private:
    void accept_launches(GDBusConnection* bus);
    void pass_launch_to(GDBusConnection* bus, const char* owner);

    std::string id_;   /**< the name on the bus: the program's file name, made safe for it */
    std::string path_; /**< of the object that takes launches */
    std::function<void()> launched_;
    GDBusConnection* bus_ = nullptr;
    unsigned object_ = 0;
    bool is_other_there_ = false; /**< the launch was passed to it */
    std::optional<LaunchOutcome> outcome_;
};

} // namespace platform
