/** The tests that the main page offers. */
#pragma once

#include "ContentView.h"

#include <span>

/** A test with a tab of its own. */
struct TestTab {
    const char* label;      /**< the tab's text */
    int mode;               /**< the radio's test mode, for `ember_start` */
    ContentView& (*view)(); /**< its pages */
    void (*destroyView)();
};

/** Every test, in the order of the tabs; the first tab has the focus at the start. */
std::span<const TestTab> testTabs();
