/** Ecore's connection to the display server. */
#pragma once

namespace platform {

/** Connects before Elementary, which waits for the first window: until then, Ecore X's event types are undefined. */
class DisplayConnection {
public:
    /**
     * Connects; logs if no server answers. If the display server exits later, the main loop ends as it does on a
     * signal, and terminate is called; Ecore's own handler would exit the process at once.
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
