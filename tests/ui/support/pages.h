/** The application's pages in a window of this process, before a radio that does as it is told. */
#pragma once

#include "support/log_capture.h"
#include "support/screen.h"
#include "support/scripted_service.h"

#include <gtest/gtest.h>
#include <memory>

namespace test {

/** Builds the pages as the application does at its start, and takes them down as it does at its end. */
class Pages : public testing::Test {
protected:
    Pages();
    ~Pages() override;

    /** Presses a button by Return. */
    void activate(const std::string& text);
    /** Lets the service say what has become of the radio; "ready" is said after a start. */
    void emit(const std::string& event);
    /** Chooses a test ("TX Test" or "RX Test") and lets the service say "ready". */
    void open(const std::string& tab);

    /** What is seen below the tabs. */
    [[nodiscard]] std::vector<std::string> content() const;

    LogCapture log; // what the application logs stays out of the test's output
    ScriptedService radio;
    std::unique_ptr<Screen> screen;

private:
    Ecore_Event_Handler* keys_ = nullptr;
};

} // namespace test
