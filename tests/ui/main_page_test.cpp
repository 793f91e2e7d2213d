#include "support/pages.h"

#include "MainPageView.h"
#include "TXTestView.h"

#include <array>
#include <filesystem>
#include <gmock/gmock.h>
#include <limits>
#include <malloc.h>

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class MainPage : public test::Pages {
protected:
    /** Whether another window of the test's own is in front of the application's. */
    [[nodiscard]] bool lowered() const { return elm_win_focus_get(screen->window()) == EINA_FALSE; }
};

TEST_F(MainPage, StartsOnTheFirstTabWithNothingBelow) {
    EXPECT_EQ(screen->focused(), "TX Test");
    EXPECT_THAT(screen->seen(), ElementsAre(" Velmora", "Exit", "TX Test", "RX Test"));
    emit("ready"); // no test is chosen
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(content(), IsEmpty());
}

TEST_F(MainPage, EveryTabPressShowsAFreshStartPage) {
    for (const std::string test : {"TX", "TX", "RX", "TX", "RX"}) {
        activate(test + " Test");
        EXPECT_THAT(content(), ElementsAre("Start " + test + " Test"));
        EXPECT_EQ(screen->focused(), "Start " + test + " Test");
    }
    screen->click(screen->find("TX Test"));
    EXPECT_THAT(content(), ElementsAre("Start TX Test"));
    EXPECT_THAT(asked(), IsEmpty());
}

TEST_F(MainPage, OnlyReadyStartsTheChosenTest) {
    activate("TX Test");
    for (const char* const event : {"ready ", " ready", "READY", "Ready", "", "ready\\nready", "error"})
        emit(event);
    EXPECT_THAT(asked(), IsEmpty());
    EXPECT_THAT(
        log.messages_of("MainPageView.cpp: requesterCb"),
        AllOf(Contains("[EVENT DATA] ready "), Contains("[EVENT DATA] "), Contains("[EVENT DATA] READY")));
    EXPECT_THAT(content(), ElementsAre("Start TX Test"));
    emit("ready");
    EXPECT_THAT(asked(), ElementsAre("ember_start(0)"));
    EXPECT_THAT(content(), Contains("Set Power"));
    radio.answer("ember_start", "(5,)"); // the page comes all the same
    open("RX Test");
    EXPECT_THAT(asked(), ElementsAre("ember_start(1)"));
    EXPECT_THAT(content(), Contains("Reset Count"));
}

TEST_F(MainPage, ExitPopupIsTheSameEachTimeWithCancelFocused) {
    activate("TX Test");
    Evas_Object* first = nullptr;
    for (const char* const closing : {"Return", "XF86Back", "XF86Exit", "Escape", "F12", "Return"}) {
        activate("Exit");
        EXPECT_THAT(content(),
                    ElementsAre("Start TX Test", "popup Exit App", "Do you want to exit ?", "Yes", "Cancel"));
        EXPECT_EQ(screen->focused(), "Cancel") << closing;
        Evas_Object* const popup = screen->find("popup Exit App");
        first = first == nullptr ? popup : first;
        EXPECT_EQ(popup, first);
        screen->press(closing);
        EXPECT_THAT(content(), ElementsAre("Start TX Test")) << closing;
        EXPECT_EQ(screen->focused(), "Exit") << closing;
        EXPECT_FALSE(lowered());
    }
}

TEST_F(MainPage, YesEndsTheMainLoopWithThePopupOnTheScreen) {
    activate("Exit");
    screen->press("Left");
    ASSERT_EQ(screen->focused(), "Yes");
    screen->type("Return");
    Ecore_Timer* const guard = ecore_timer_add(
        5.0,
        [](void*) -> Eina_Bool {
            ADD_FAILURE() << "the main loop does not end";
            elm_exit();
            return ECORE_CALLBACK_RENEW;
        },
        nullptr);
    elm_run();
    ecore_timer_del(guard);
    EXPECT_NE(screen->find("popup Exit App"), nullptr);
}

TEST_F(MainPage, BackLowersTheWindowAndRedRaisesItWithTheSamePage) {
    Evas_Object* const other = elm_win_util_standard_add("other", "Other");
    evas_object_resize(other, 300, 300);
    evas_object_show(other);
    open("TX Test");
    ASSERT_TRUE(test::await([&] { return elm_win_focus_get(other) != EINA_FALSE; }));
    screen->press("XF86Red");
    EXPECT_TRUE(test::await([&] { return !lowered(); }));
    for (const char* const key : {"XF86Back", "XF86Exit"}) {
        const auto page = content();
        activate("Set Channel");
        screen->press(key); // closes the picker only
        EXPECT_EQ(content(), page) << key;
        EXPECT_FALSE(test::await([&] { return lowered(); }, std::chrono::milliseconds(100))) << key;
        screen->press(key);
        EXPECT_TRUE(test::await([&] { return lowered(); })) << key;
        EXPECT_EQ(content(), page) << key;
        screen->press("XF86Red");
        EXPECT_TRUE(test::await([&] { return !lowered(); })) << key;
    }
    evas_object_del(other);
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

TEST_F(MainPage, PickerStaysOpenWhenThePageBehindItChanges) {
    open("TX Test");
    activate("Set Channel");
    screen->press("Up", 2);
    emit("ready");
    EXPECT_EQ(screen->focused(), "[13]");
    screen->press("Return");
    EXPECT_THAT(asked(), ElementsAre("ember_start(0)", "ember_start(0)", "ember_set_channel(13)"));
    EXPECT_THAT(content(),
                ElementsAre("Power: ", "Set Power", "Channel: ", "13", "Start Stream", "Stop Test"));
    activate("13");
    screen->click(screen->find("RX Test")); // the popup covers the tab
    EXPECT_EQ(screen->focused(), "[13]");
    EXPECT_THAT(content(), Contains("Start Stream"));
    screen->press("XF86Back");
    EXPECT_EQ(screen->focused(), "13");
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
