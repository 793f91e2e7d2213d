/** The window manager of the television's own screen. */
#pragma once

#include "key_router.h"
#include "x11.h"

namespace simulator {

/**
 * Every ordinary window fills the screen; dialogs have the size they ask for. Windows raise, lower and
 * iconify themselves, and the top one has the focus.
 */
class WindowManager {
public:
    /** @throws std::runtime_error when the screen has a window manager already. */
    explicit WindowManager(Display* display);

    /** Handles one event. */
    void handle(const XEvent& event);

private:
    struct Client {
        bool mapped = false;
        bool iconic = false;
        bool fullscreen = false;
        bool fills_screen = true;
    };

    void announce();
    void handle_map_request(Window window);
    void handle_configure_request(const XConfigureRequestEvent& request);
    void handle_unmap(Window window);
    void handle_destroy(Window window);
    void handle_message(const XClientMessageEvent& message);

    void adopt(Window window);
    void fill_screen(Window window);
    void change_fullscreen(Window window, unsigned long action);
    void iconify(Window window);
    void activate(Window window);
    void offer_focus(Window window);
    void write_state(Window window, int state);
    [[nodiscard]] std::vector<Window> mapped_from_bottom() const;
    void update_front();

    Display* display_;
    Window root_;
    int width_;
    int height_;
    Atoms atoms_;
    KeyRouter keys_;
    std::map<Window, Client> clients_;
    Window front_ = None;
};

} // namespace simulator
