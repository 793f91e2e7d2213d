#include "support/pages.h"
#include "support/toolkit_window.h"

#include "MainPageView.h"
#include "WidgetHandle.h"
#include "WidgetHelpers.h"
#include "support/sleep_recorder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <limits>
#include <malloc.h>
#include <system_error>

namespace {

using testing::ElementsAre;

class MainPage : public test::Pages {};

TEST_F(MainPage, UnforeseenErrorOfAStartIsLoggedAndLeavesTheButton) {
    const std::filesystem::path relay = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/socat";
    std::filesystem::rename(relay, relay.string() + ".away"); // so that it is waited for
    activate("TX Test");
    const SleepRecorder fault(
        [](std::size_t) { throw std::system_error(EAGAIN, std::generic_category(), "unforeseen"); });
    activate("Start TX Test");
    std::filesystem::rename(relay.string() + ".away", relay);
    EXPECT_NE(screen->find("Please Wait..."), nullptr);
    EXPECT_THAT(log.text(), testing::HasSubstr("> ended with an exception: unforeseen: Resource"));
}

TEST_F(MainPage, KeyWithoutNamesIsLogged) {
    Ecore_Event_Key without_names{};
    EXPECT_TRUE(MainPageView::keyDownCb(&MainPageView::getInstance(), 0, &without_names));
    EXPECT_THAT(log.messages_of("MainPageView.cpp: keyDownCb"), ElementsAre("KeyName [] Key[]"));
}

TEST_F(MainPage, UseOverAndOverTakesNoMemoryAndNoDescriptors) {
    namespace fs = std::filesystem;
    // What this process has allocated and not freed; unlike resident pages it does not come and go.
    const auto allocated = [] { return static_cast<long>(mallinfo2().uordblks / 1024); };
    const auto descriptors = [] { return std::distance(fs::directory_iterator("/proc/self/fd"), {}); };
    const auto use = [this](int tabs, int pickers) {
        for (int i = 0; i < tabs; ++i)
            activate(i % 2 == 0 ? "RX Test" : "TX Test");
        emit("ready");
        for (int i = 0; i < pickers; ++i) {
            activate(i % 2 == 0 ? "Set Power" : "Set Channel");
            screen->press("XF86Back");
            ASSERT_TRUE(test::await([&] { return screen->focused().starts_with("Set "); }));
        }
        log.clear();
    };
    open("TX Test");
    use(10, 10);
    const auto open_files = descriptors();
    long least_grown_kib = std::numeric_limits<long>::max();
    for (int round = 0; round < 3; ++round) { // what leaks does so each time, a table that doubles does not
        const long before = allocated();
        use(400, 40);
        least_grown_kib = std::min(least_grown_kib, allocated() - before);
    }
    EXPECT_LT(least_grown_kib, 48); // some 20 measured
    EXPECT_EQ(descriptors(), open_files);
}

class SharedPieces : public test::ToolkitWindow {};

TEST_F(SharedPieces, StepWhoseWidgetCannotBeMadeIsLoggedAndThePageGoesOn) {
    EXPECT_FALSE(runPageStep(LOG_ORIGIN("createSomething"), [] {
        createTextbox(nullptr, "text");
        ADD_FAILURE() << "the step goes on";
    }));
    EXPECT_THAT(log.messages_of("pages_test.cpp: createSomething"), ElementsAre("Input data is Null!!"));
    EXPECT_TRUE(runPageStep(LOG_ORIGIN("createSomething"), [this] { createTextbox(page, "text"); }));
}

} // namespace
