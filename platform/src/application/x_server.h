/** Ecore's connection to the X server, and what Ecore X does not ask it. */
#pragma once

#include <bitset>
#include <optional>

namespace platform {

/**
 * Keeps Ecore's connection to the X server open while it lives.
 *
 * Elementary connects only with the first window, and Ecore X has no event types before that.
 */
class XConnection {
public:
    XConnection();
    ~XConnection();
    XConnection(const XConnection&) = delete;
    XConnection& operator=(const XConnection&) = delete;
    /** Whether a server answered. */
    explicit operator bool() const { return open_; }

private:
    bool open_;
};

/** The server's own time in milliseconds, which keys and buttons carry too; nothing without a display. */
std::optional<unsigned> x_server_time();

/** By key code, whether a key is down now; none without a display. */
std::bitset<256> x_keys_down();

} // namespace platform
