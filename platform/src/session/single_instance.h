/** Allows only one process per application. */
#pragma once

#include <functional>
#include <gio/gio.h>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/** What a new process must do. */
enum class LaunchOutcome {
    runs,    /**< run: there is no other process */
    reached, /**< exit: the launch was passed to a running process */
    held_up, /**< exit: an earlier process does not finish its shutdown */
};

/**
 * Owns the application's name on the session bus, or passes the launch to the process that owns it.
 *
 * Later launches arrive as calls to org.freedesktop.Application.Activate; a busy process handles them later. A process
 * that is shutting down keeps the name but has removed the object, so GDBus's worker thread refuses the call at once,
 * and the new process waits in the bus's queue for the name. (GApplication is not used: a launch was observed to wait
 * until the first process listed its actions and, if that process was busy, to run as a second one.)
 *
 * The start waits at most one second for the bus. After that the process runs without the name, and gets the name
 * once the bus answers, unless another process owns it.
 */
class SingleInstance {
public:
    /**
     * Requests the name without waiting; the bus releases it when the process exits. Create only one instance, and do
     * not dispatch GLib's default context after destroying the instance.
     *
     * @param program  the program's path or name, as in argv[0].
     * @param launched called from GLib's default context on every later launch.
     */
    SingleInstance(std::string_view program, std::function<void()> launched);

    /** Dispatches GLib's default context until the outcome is known. */
    LaunchOutcome settle();

    /** Refuses later launches, because this process is shutting down. */
    void refuse_launches();

private:
    void accept_launches(GDBusConnection* bus);
    void pass_launch_to(GDBusConnection* bus, const char* owner);

    std::string id_;   /**< the bus name: the program's file name with unsafe characters replaced */
    std::string path_; /**< path of the object that receives launches */
    std::function<void()> launched_;
    GDBusConnection* bus_ = nullptr;
    unsigned object_ = 0;
    bool is_passed_on_ = false; /**< the launch was passed to another process */
    std::optional<LaunchOutcome> outcome_;
};

} // namespace platform
