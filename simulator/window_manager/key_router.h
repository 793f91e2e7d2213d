/** Delivers keys of the remote control to windows that have grabbed these keys, even to windows behind others. */
#pragma once

#include "x11.h"

#include <X11/XF86keysym.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <map>
#include <set>

namespace simulator {

/**
 * EFL's `elm_win_keygrab_set` records a window's keys in a property. While that window is not in front, the window
 * manager grabs these keys and delivers each press both to that window and to the one in front. A grab of XF86Red
 * includes F1, the red key on a PC keyboard.
 */
class KeyRouter {
public:
    /** Announces support for key grabs, and assigns a key code to XF86Red, which the default keyboard lacks. */
    KeyRouter(Display* display, Window root, const Atoms& atoms)
        : display_(display), root_(root), atoms_(atoms) {
        map_red_key();
        write_property(display, root, atoms.keyrouter_supported, XA_CARDINAL, {1});
    }

    /** Reads a window's grabbed keys. */
    void read_table(Window window) {
        std::set<unsigned>& codes = tables_[window];
        codes.clear();
        for (const auto item : read_property(display_, window, atoms_.keyrouter_table, XA_CARDINAL))
            codes.insert(static_cast<unsigned>(item & 0xff));
        if (codes.contains(XKeysymToKeycode(display_, XF86XK_Red)))
            codes.insert(XKeysymToKeycode(display_, XK_F1));
        set_front(front_);
    }
    void forget(Window window) { tables_.erase(window); }

    /** Grabs exactly the keys that windows behind the front window need. */
    void set_front(Window front) {
        front_ = front;
        std::set<unsigned> wanted;
        for (const auto& [window, codes] : tables_)
            if (window != front)
                wanted.insert(codes.begin(), codes.end());
        if (wanted == grabbed_)
            return;
        XUngrabKey(display_, AnyKey, AnyModifier, root_);
        for (const auto code : wanted)
            XGrabKey(display_, static_cast<int>(code), AnyModifier, root_, False, GrabModeAsync,
                     GrabModeSync);
        grabbed_ = std::move(wanted);
    }

    /** Delivers a grabbed key that was pressed. */
    void route(const XKeyEvent& press) {
        for (const auto& [window, codes] : tables_) {
            if (window == front_ || !codes.contains(press.keycode))
                continue;
            XEvent copy{};
            copy.xkey = press;
            copy.xkey.window = window;
            copy.xkey.subwindow = None;
            for (const int type : {KeyPress, KeyRelease}) {
                copy.type = type;
                XSendEvent(display_, window, False, NoEventMask, &copy);
            }
        }
        XAllowEvents(display_, ReplayKeyboard, press.time); // the window in front gets the key directly
    }

private:
    /** Assigns the highest free key code to XF86Red. */
    void map_red_key() {
        if (XKeysymToKeycode(display_, XF86XK_Red) != 0)
            return;
        int lowest = 0;
        int highest = 0;
        XDisplayKeycodes(display_, &lowest, &highest);
        for (int code = highest; code >= lowest; --code) {
            int count = 0;
            const std::unique_ptr<KeySym, decltype(&XFree)> symbols(
                XGetKeyboardMapping(display_, static_cast<KeyCode>(code), 1, &count), XFree);
            if (std::any_of(symbols.get(), symbols.get() + count,
                            [](KeySym symbol) { return symbol != NoSymbol; }))
                continue;
            KeySym red = XF86XK_Red;
            XChangeKeyboardMapping(display_, code, 1, &red, 1);
            return;
        }
    }

    Display* display_;
    Window root_;
    const Atoms& atoms_;
    Window front_ = None;
    std::map<Window, std::set<unsigned>> tables_; // key codes
    std::set<unsigned> grabbed_;
};

} // namespace simulator
