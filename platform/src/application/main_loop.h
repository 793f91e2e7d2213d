/** The one main loop, and why it ends. */
#pragma once

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

} // namespace platform
