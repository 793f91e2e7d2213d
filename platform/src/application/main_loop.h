/** The one main loop, and why it ends. */
#pragma once

#include "ecore_handlers.h"

#include <string>

namespace platform {

/** The main loop, and a request to end it that came before it ran: Ecore forgets such a request. */
class MainLoop {
public:
    static MainLoop& instance();

    /** Runs until it is asked to end, and logs why it ends: the reason given first. */
    void run();

    /** Notes the reason of an end that follows at once; only the first one counts. */
    void note_reason(const char* reason);

    void quit(const char* reason);

    /** Forgets requests and reasons of an earlier life. */
    void reset();

private:
    std::string reason_;
    bool running_ = false;
    bool quit_requested_ = false;
};

/**
 * While it lives, SIGTERM, SIGINT, SIGQUIT and SIGHUP end the main loop, and the log can say that the window was
 * closed.
 *
 * Measured with EFL 1.26.3: Ecore turns each of them into an event that comes once control is back in the
 * loop; Elementary ends the loop for all but SIGHUP. libeldbus sends the same event, without a signal in it,
 * when the session bus goes while the accessibility bridge uses it: that one is kept from Elementary.
 */
class EndingEvents {
public:
    EndingEvents();

private:
    OwnedEventHandler exit_;
    OwnedEventHandler hangup_;
    OwnedEventHandler close_;
};

} // namespace platform
