/** The table of tests. */
#pragma once

#include "ContentView.h"

#include <span>

/** A test and its tab. */
struct TestTab {
    const char* label;      /**< the tab's text */
    int mode;               /**< test mode for `ember_start` */
    ContentView& (*view)(); /**< the test's pages */
    void (*destroyView)();
};

/** Returns all tests in tab order; the first tab has the initial focus. */
std::span<const TestTab> testTabs();
