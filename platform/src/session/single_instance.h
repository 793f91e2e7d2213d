/** One process for each application. */
#pragma once

#include <functional>
#include <gio/gio.h>
#include <optional>
#include <string>
#include <string_view>

namespace platform {

/** What a started process does. */
enum class LaunchOutcome {
    runs,    /**< runs: no other process is known */
    reached, /**< exits: another process runs, and has the launch */
    held_up, /**< exits: another process is ending, and does not finish */
};

/**
 * Holds the application's name on the session bus, or passes the launch to the process that holds it.
 *
 * Later launches come in as calls of org.freedesktop.Application.Activate. A busy process handles them
 * later. A process that is ending keeps the name but has removed the object, so GDBus's own thread refuses the call at
 * once, and the calling process waits in the bus's queue for the name. (GApplication asks the first process for
 * its actions and waits for the answer, measured: with a busy one a second would come up.)
 *
 * The start waits one second at most for the bus; then the process runs without the name, and gets it when the bus
 * answers and no other process has it.
 */
class SingleInstance {
public:
    /**
     * Asks for the name, without waiting. One of these lives at a time.
     *
     * @param program  the path or name the program was started as.
     * @param launched called from GLib's default context at every later launch. The context must not be dispatched after
     * this object is destroyed; the bus frees the name when the process exits.
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
