#include "support/pages.h"

#include "MainPageView.h"
#include "support/sleep_recorder.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <limits>
#include <malloc.h>
#include <system_error>

namespace {

using testing::Contains;
using testing::ElementsAre;

class MainPage : public test::Pages {};

TEST_F(MainPage, UnforeseenErrorOfAStartIsLoggedAndAFailedStart) {
    for (const std::string tab : {"TX Test", "RX Test"}) {
        activate(tab);
        {
            const SleepRecorder fault( // in the wait for the relay, which has only just been started
                [](std::size_t) { throw std::system_error(EAGAIN, std::generic_category(), "unforeseen"); });
            activate("Start " + tab);
        }
        EXPECT_THAT(content(), ElementsAre("Failed to start child process"));
        EXPECT_THAT(log.text(), testing::HasSubstr("> ended with an exception: unforeseen: Resource"));
        log.clear();
    }
}

TEST_F(MainPage, OtherKeysAreOnlyLogged) {
    const auto before = screen->seen();
    log.clear();
    screen->press("F5");
    EXPECT_THAT(log.messages(), ElementsAre("E MainPageView.cpp: keyDownCb > KeyName [F5] Key[F5]"));
    EXPECT_EQ(screen->seen(), before);
    Ecore_Event_Key without_names{};
    EXPECT_TRUE(MainPageView::keyDownCb(&MainPageView::getInstance(), 0, &without_names));
    EXPECT_FALSE(MainPageView::keyDownCb(nullptr, 0, &without_names));
    EXPECT_FALSE(MainPageView::keyDownCb(&MainPageView::getInstance(), 0, nullptr));
    EXPECT_THAT(log.messages_of("MainPageView.cpp: keyDownCb"), Contains("no value").Times(2));
}

TEST_F(MainPage, MouseDoesNothingBehindAPicker) {
    open("TX Test");
    screen->click(screen->find("Set Channel"));
    ASSERT_EQ(screen->focused(), "[11]");
    screen->click(screen->find("RX Test"));
    EXPECT_EQ(screen->focused(), "[11]");
    EXPECT_THAT(content(), Contains("Start Stream"));
}

/** What this process has allocated and not freed, in KiB; unlike resident pages it does not come and go. */
long allocated() { return static_cast<long>(mallinfo2().uordblks / 1024); }

auto descriptors() {
    namespace fs = std::filesystem;
    return std::distance(fs::directory_iterator("/proc/self/fd"), fs::directory_iterator());
}

TEST_F(MainPage, UseOverAndOverTakesNoMemoryAndNoDescriptors) {
    open("TX Test");
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
    use(10, 10);
    const auto open_files = descriptors();
    long least_grown = std::numeric_limits<long>::max();
    for (int round = 0; round < 3; ++round) { // what leaks does so each time, a table that doubles does not
        const long before = allocated();
        use(400, 40);
        least_grown = std::min(least_grown, allocated() - before);
    }
    RecordProperty("least_grown_kib", static_cast<int>(least_grown));
    EXPECT_LT(least_grown, 48); // some 20 measured
    EXPECT_EQ(descriptors(), open_files);
}

} // namespace
