/** Atoms, and window properties with 32-bit items. */
#pragma once

#include <X11/Xlib.h>

#include <memory>
#include <vector>

namespace simulator {

class Atoms {
    Display* display_; // must be first: the atoms are interned on it
    [[nodiscard]] Atom named(const char* text) const { return XInternAtom(display_, text, False); }

public:
    explicit Atoms(Display* display) : display_(display) {}

    Atom wm_state = named("WM_STATE");
    Atom wm_change_state = named("WM_CHANGE_STATE");
    Atom wm_protocols = named("WM_PROTOCOLS");
    Atom wm_take_focus = named("WM_TAKE_FOCUS");
    Atom supported = named("_NET_SUPPORTED");
    Atom supporting_wm_check = named("_NET_SUPPORTING_WM_CHECK");
    Atom name = named("_NET_WM_NAME");
    Atom utf8_string = named("UTF8_STRING");
    Atom active_window = named("_NET_ACTIVE_WINDOW");
    Atom client_list_stacking = named("_NET_CLIENT_LIST_STACKING");
    Atom state = named("_NET_WM_STATE");
    Atom state_fullscreen = named("_NET_WM_STATE_FULLSCREEN");
    Atom state_hidden = named("_NET_WM_STATE_HIDDEN");
    Atom window_type = named("_NET_WM_WINDOW_TYPE");
    Atom window_type_normal = named("_NET_WM_WINDOW_TYPE_NORMAL");
    /** On the root window: this window manager supports key grabs. EFL checks this property. */
    Atom keyrouter_supported = named("_E_WINDOW_KEYROUTER_SUPPORTED");
    /** On a window, written by EFL: one CARDINAL per grabbed key, with the key code in its low byte. */
    Atom keyrouter_table = named("_E_WINDOW_KEYROUTER_WINDOW_KEYTABLE");
};

/** Reads a window's property; returns no items if it is missing or has a different type. */
inline std::vector<unsigned long> read_property(Display* display, Window window, Atom property, Atom type) {
    constexpr long most_items = 1024;
    Atom found_type = None;
    int bits = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* bytes = nullptr;
    const auto status = XGetWindowProperty(display, window, property, 0, most_items, False, type, &found_type,
                                           &bits, &count, &left, &bytes);
    const std::unique_ptr<unsigned char, decltype(&XFree)> held(bytes, XFree);
    if (status != Success || bytes == nullptr || bits != 32)
        return {};
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): Xlib returns 32-bit items as longs
    const auto* items = reinterpret_cast<const unsigned long*>(bytes);
    return {items, items + count};
}

/** Replaces a window's property. */
inline void write_property(Display* display, Window window, Atom property, Atom type,
                           const std::vector<unsigned long>& items) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): Xlib takes 32-bit items as longs
    const auto* bytes = reinterpret_cast<const unsigned char*>(items.data());
    XChangeProperty(display, window, property, type, 32, PropModeReplace, bytes,
                    static_cast<int>(items.size()));
}

} // namespace simulator
