#include "keyboard.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <array>
#include <stdexcept>
#include <string_view>
#include <thread>

namespace simulator {
namespace {

/** A key of the remote control, and its names on a keyboard. */
struct RemoteKey {
    std::string_view name;
    const char* key;
    const char* pc_key;
};

constexpr std::array<RemoteKey, 4> remote_keys{{{"OK", "Return", "Return"},
                                                {"Back", "XF86Back", "Escape"},
                                                {"Exit", "XF86Exit", "F12"},
                                                {"Red", "XF86Red", "F1"}}};

/** The key's code; 0 if the keyboard lacks the key. */
KeyCode code_of(_XDisplay* display, const char* key) {
    const KeySym symbol = XStringToKeysym(key);
    return symbol == NoSymbol ? KeyCode{0} : XKeysymToKeycode(display, symbol);
}

/** Reads key codes that another program may have changed. */
void refresh_keyboard_mapping(_XDisplay* display) {
    while (XPending(display) > 0) {
        XEvent event{};
        XNextEvent(display, &event);
        if (event.type == MappingNotify)
            XRefreshKeyboardMapping(&event.xmapping);
    }
}

KeyCode code_or_pc_code(_XDisplay* display, const std::string& key) {
    refresh_keyboard_mapping(display);
    for (const RemoteKey& remote : remote_keys)
        if (key == remote.name || key == remote.key) {
            const KeyCode code = code_of(display, remote.key);
            return code != 0 ? code : code_of(display, remote.pc_key);
        }
    return code_of(display, key.c_str());
}

} // namespace

void CloseDisplay::operator()(_XDisplay* display) const { XCloseDisplay(display); }

Display open_display() {
    Display display(XOpenDisplay(nullptr));
    if (!display)
        throw std::runtime_error("no X display: " + std::string(XDisplayName(nullptr)));
    return display;
}

void move_key(const Display& display, const std::string& key, bool down) {
    const KeyCode code = code_or_pc_code(display.get(), key);
    XTestFakeKeyEvent(display.get(), code, down ? True : False, CurrentTime);
    XFlush(display.get());
}

void press_key(const Display& display, const std::string& key, std::chrono::milliseconds time) {
    move_key(display, key, true);
    if (time.count() > 0)
        std::this_thread::sleep_for(time);
    move_key(display, key, false);
    XSync(display.get(), False);
}

bool has_key(const Display& display, const std::string& key) {
    return code_or_pc_code(display.get(), key) != 0;
}

} // namespace simulator
