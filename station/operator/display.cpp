#include "display.h"

#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <array>
#include <stdexcept>
#include <string_view>

namespace station {
namespace {

struct RemoteKey {
    std::string_view name;
    const char* pc_key;
};

constexpr std::array<RemoteKey, 3> remote_keys{
    {{"XF86Back", "Escape"}, {"XF86Exit", "F12"}, {"XF86Red", "F1"}}};

/** The key's code, 0 when the keyboard does not have it. */
KeyCode code_of(_XDisplay* display, const std::string& key) {
    const KeySym symbol = XStringToKeysym(key.c_str());
    return symbol == NoSymbol ? KeyCode{0} : XKeysymToKeycode(display, symbol);
}

KeyCode code_or_stand_in(_XDisplay* display, const std::string& key) {
    const KeyCode code = code_of(display, key);
    for (const RemoteKey& remote : remote_keys)
        if (code == 0 && remote.name == key)
            return code_of(display, remote.pc_key);
    return code;
}

} // namespace

void CloseDisplay::operator()(_XDisplay* display) const { XCloseDisplay(display); }

Display open_display() {
    Display display(XOpenDisplay(nullptr));
    if (!display)
        throw std::runtime_error("no X display: " + std::string(XDisplayName(nullptr)));
    return display;
}

void press_key(const Display& display, const std::string& key) {
    const KeyCode code = code_or_stand_in(display.get(), key);
    if (code == 0)
        throw std::invalid_argument("this keyboard has no key '" + key + "'");
    XTestFakeKeyEvent(display.get(), code, True, CurrentTime);
    XTestFakeKeyEvent(display.get(), code, False, CurrentTime);
    XSync(display.get(), False);
}

} // namespace station
