#include "TestTab.h"

#include "RXTestView.h"
#include "TXTestView.h"

#include <array>

namespace {

template <class View>
constexpr TestTab tab(const char* label, int mode) {
    return {label, mode, []() -> ContentView& { return View::getInstance(); }, View::destroyInstance};
}

constexpr std::array tabs{tab<TXTestView>("TX Test", 0), tab<RXTestView>("RX Test", 1)};

} // namespace

std::span<const TestTab> testTabs() { return tabs; }
