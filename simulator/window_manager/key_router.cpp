#include "key_router.h"

#include <X11/XF86keysym.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>

#include <algorithm>
#include <memory>

namespace simulator {

KeyRouter::KeyRouter(Display* display, Window root, const Atoms& atoms)
    : display_(display), root_(root), atoms_(atoms) {
    map_red_key();
    write_property(display, root, atoms.keyrouter_supported, XA_CARDINAL, {1});
}

void KeyRouter::map_red_key() {
    if (XKeysymToKeycode(display_, XF86XK_Red) != 0)
        return;
    int lowest = 0;
    int highest = 0;
    int symbols_each = 0;
    XDisplayKeycodes(display_, &lowest, &highest);
    const std::unique_ptr<KeySym, decltype(&XFree)> map(
        XGetKeyboardMapping(display_, static_cast<KeyCode>(lowest), highest - lowest + 1, &symbols_each),
        XFree);
    for (int code = highest; map && code >= lowest; --code) {
        const auto* symbols = map.get() + static_cast<std::ptrdiff_t>(code - lowest) * symbols_each;
        if (std::any_of(symbols, symbols + symbols_each, [](KeySym symbol) { return symbol != NoSymbol; })) {
            continue;
        }
        KeySym red = XF86XK_Red;
        XChangeKeyboardMapping(display_, code, 1, &red, 1);
        return;
    }
}

void KeyRouter::read_table(Window window) {
    const auto red = XKeysymToKeycode(display_, XF86XK_Red);
    std::set<unsigned> codes;
    for (const auto item : read_property(display_, window, atoms_.keyrouter_table, XA_CARDINAL)) {
        codes.insert(static_cast<unsigned>(item & 0xff));
    }
    if (codes.contains(red))
        codes.insert(XKeysymToKeycode(display_, XK_F1));
    tables_[window] = std::move(codes);
    set_front(front_);
}

void KeyRouter::set_front(Window front) {
    front_ = front;
    std::set<unsigned> wanted;
    for (const auto& [window, codes] : tables_) {
        if (window != front)
            wanted.insert(codes.begin(), codes.end());
    }
    if (wanted == grabbed_)
        return;
    XUngrabKey(display_, AnyKey, AnyModifier, root_);
    for (const auto code : wanted) {
        XGrabKey(display_, static_cast<int>(code), AnyModifier, root_, False, GrabModeAsync, GrabModeSync);
    }
    grabbed_ = std::move(wanted);
}

void KeyRouter::route(const XKeyEvent& press) {
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
    XAllowEvents(display_, ReplayKeyboard, press.time); // the window in front gets the key itself
}

} // namespace simulator
