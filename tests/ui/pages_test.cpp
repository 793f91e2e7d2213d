#include "support/pages.h"
#include "support/usleep_replacement.h"

#include "WidgetHelpers.h"

#include <filesystem>
#include <malloc.h>
#include <system_error>

namespace {

class MainPage : public test::Pages {};

TEST_F(MainPage, ExceptionDuringStartIsLoggedAndPleaseWaitStays) {
    const std::filesystem::path socat = "/opt/usr/apps/com.kelsor.tv.brimhub/bin/socat";
    std::filesystem::rename(socat, socat.string() + ".away"); // the application waits for socat's link
    activate("TX Test");
    const Evas_Object* const button = find("Start TX Test");
    std::optional<simulator::Pixels> frozen;
    usleep_replacement = [&](useconds_t) {
        frozen.emplace(test::fill_of(button));
        throw std::system_error(EAGAIN, std::generic_category(), "unforeseen");
    };
    const simulator::Pixels before = test::fill_of(button);
    activate("Start TX Test");
    usleep_replacement = nullptr;
    std::filesystem::rename(socat.string() + ".away", socat);
    EXPECT_TRUE(frozen && !(*frozen == before) && *frozen == test::fill_of(button));
    EXPECT_EQ(find("Please Wait..."), button);
    EXPECT_THAT(log.text(), testing::HasSubstr("> ended with an exception: unforeseen: Resource"));
}

TEST_F(MainPage, NamelessKeyAndFailedPageStepAreLogged) {
    Ecore_Event_Key nameless{};
    EXPECT_TRUE(MainPageView::keyDownCb(&MainPageView::getInstance(), 0, &nameless));
    EXPECT_EQ(log.messages().back(), "E MainPageView.cpp: keyDownCb > KeyName [] Key[]");
    EXPECT_FALSE(runPageStep(LOG_ORIGIN("createSomething"), [] {
        createTextbox(nullptr, "text");
        ADD_FAILURE() << "the step continued";
    }));
    EXPECT_EQ(log.messages().back(), "E pages_test.cpp: createSomething > Input data is Null!!");
}

/** A leak grows in every round, unlike a table that is enlarged now and then. The first round fills caches. */
TEST_F(MainPage, RepeatedUseLeaksNoMemory) {
    const auto allocated = [] { return static_cast<long>(mallinfo2().uordblks); };
    std::vector<long> growths;
    for (int round = 0; round < 3; ++round) {
        const long before = allocated();
        for (int time = 0; time < 100; ++time)
            activate(time % 2 == 0 ? "RX Test" : "TX Test");
        emit_ready();
        for (int time = 0; time < 10; ++time) {
            activate(time % 2 == 0 ? "Set Power" : "Set Channel");
            press("XF86Back");
            ASSERT_TRUE(test::await([&] { return focused().starts_with("Set "); }));
        }
        log.clear();
        growths.push_back(allocated() - before);
    }
    constexpr long presses = 110; // per round
    constexpr long bytes = 150;   // per press; measured: 70
    EXPECT_LT(std::min(growths[1], growths[2]), presses * bytes) << testing::PrintToString(growths);
}

} // namespace
