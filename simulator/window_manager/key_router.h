/** Hands remote-control keys to windows that asked for them although another window is in front. */
#pragma once

#include "x11.h"

#include <map>
#include <set>

namespace simulator {

/**
 * A window asks with EFL's `elm_win_keygrab_set`, which leaves a property on it. While such a window is not in front,
 * its keys are grabbed: each press goes to it as well as to the window in front. F1 is the red key of a PC keyboard and
 * comes with XF86Red.
 */
class KeyRouter {
public:
    /** Tells windows that keys can be asked for, and gives XF86Red a key code, which the default keyboard lacks. */
    KeyRouter(Display* display, Window root, const Atoms& atoms);

    /** Reads what a window asks for. */
    void read_table(Window window);
    void forget(Window window) { tables_.erase(window); }

    /** Grabs the keys that windows behind the one in front ask for, and no others. */
    void set_front(Window front);

    /** A grabbed key was pressed: hands it on. */
    void route(const XKeyEvent& press);

private:
    void map_red_key();

    Display* display_;
    Window root_;
    const Atoms& atoms_;
    Window front_ = None;
    std::map<Window, std::set<unsigned>> tables_; // key codes
    std::set<unsigned> grabbed_;
};

} // namespace simulator
