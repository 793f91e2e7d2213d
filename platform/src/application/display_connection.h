/** Ecore's connection to the display server. */
#pragma once

namespace platform {

/** Keeps the connection open while it exists. Elementary connects with the first window; Ecore X has no event types before. */
class DisplayConnection {
public:
    /**
     * Connects, and logs when nothing answers. From then on the main loop ends when the display server exits, as it
     * does on a signal, and terminate follows; Ecore would end the process at once.
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
