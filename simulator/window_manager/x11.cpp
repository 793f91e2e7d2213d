#include "x11.h"

#include <memory>

namespace simulator {

std::vector<unsigned long> read_property(Display* display, Window window, Atom property, Atom type) {
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
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): Xlib hands 32-bit items out as longs
    const auto* items = reinterpret_cast<const unsigned long*>(bytes);
    return {items, items + count};
}

void write_property(Display* display, Window window, Atom property, Atom type,
                    const std::vector<unsigned long>& items) {
    // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): Xlib takes 32-bit items as longs
    const auto* bytes = reinterpret_cast<const unsigned char*>(items.data());
    XChangeProperty(display, window, property, type, 32, PropModeReplace, bytes,
                    static_cast<int>(items.size()));
}

} // namespace simulator
