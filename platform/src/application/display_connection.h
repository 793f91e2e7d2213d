/** Ecore's connection to the display server. */
#pragma once

namespace platform {

/** Connects while it lives; Elementary would only with the first window, and Ecore X has no event types before. */
class DisplayConnection {
public:
    /**
     * Connects, and logs when nothing answers. From then on the end of the display server ends the main loop, as a
     * signal does, and terminate follows; Ecore would end the process at once.
     */
    DisplayConnection();
    ~DisplayConnection();
    DisplayConnection(const DisplayConnection&) = delete;
    DisplayConnection& operator=(const DisplayConnection&) = delete;
    /** Whether a server answered. */
    explicit operator bool() const { return is_open_; }

private:
    bool is_open_;
};

} // namespace platform
