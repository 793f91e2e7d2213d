#include "support/other_window.h"
#include "support/road.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>

using testing::ElementsAre;

class KeyRoad : public Road {
protected:
    void expect_in_front(const OtherWindow& other, bool in_front) {
        operator_.wait_until(in_front ? "the application in front" : "the other window in front",
                             [&](const station::Screen& screen) {
                                 return screen.in_front() == in_front && other.has_keys() != in_front;
                             });
    }

    void send_behind(const OtherWindow& other, const std::string& key) {
        operator_.press(key);
        expect_in_front(other, false);
    }

    void fetch_back(const OtherWindow& other) {
        operator_.press("XF86Red");
        expect_in_front(other, true);
    }
};

/** The television's language, changed in its settings. */
class LanguageRoad : public KeyRoad {
protected:
    void set_language(const std::string& language) const {
        std::filesystem::create_directories(settings_.parent_path());
        std::ofstream(settings_) << "[db/menu_widget]\nlanguage=" << language << "\n";
    }
    void expect_order(const std::string& left, const std::string& right) {
        operator_.wait_until(left + " left of " + right, [&](const station::Screen& screen) {
            return screen.shows(left) && screen.shows(right) && screen.find(left)->x < screen.find(right)->x;
        });
    }
    void TearDown() override {
        KeyRoad::TearDown();
        std::filesystem::remove(settings_);
    }

private:
    const std::filesystem::path settings_ =
        std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "tv-platform" / "settings.ini";
};

TEST_F(KeyRoad, BackClosesThePopupThenGivesWayAndRedComesBack) {
    const OtherWindow other;
    open_application();
    go_to_header("Exit");
    for (const char* const key : {"XF86Back", "XF86Exit", "Escape"}) {
        enter("Cancel");
        operator_.press(key);
        operator_.wait_until_gone("Exit App");
        operator_.wait_for_focus("Exit");
        EXPECT_FALSE(other.has_keys()); // one press does one thing
        send_behind(other, key);
        fetch_back(other);
    }
    EXPECT_EQ(log_.count("> _app_pause"), 3);
    EXPECT_EQ(log_.count("> _app_resume"), 3);
    operator_.press("XF86Red"); // in front already
    enter("Cancel");
}

TEST_F(KeyRoad, ThePopupIsTheSameEachTime) {
    open_application();
    go_to_header("Exit");
    for (int times = 0; times < 3; ++times) {
        enter("Cancel");
        EXPECT_THAT(operator_.texts(), ElementsAre("Exit App", "Do you want to exit ?", "Yes", "Cancel"));
        enter("Exit");
    }
}

TEST_F(KeyRoad, ATestPageWaitsBehindAsItWasLeft) {
    const OtherWindow other;
    open_tx_test();
    open_picker(power_picker, 0, 4);
    choose(power_picker, 4);
    go("Down", "Set Channel");
    open_picker(channel_picker, 11, 12);
    operator_.press("XF86Exit"); // the picker alone
    operator_.wait_for_focus("Set Channel");
    const auto page = operator_.texts();
    send_behind(other, "XF86Back");
    operator_.press("Down"); // the other window's key
    fetch_back(other);
    operator_.wait_for_focus("Set Channel");
    EXPECT_EQ(operator_.texts(), page);
    expect_asked({"ember_set_power(4)"});
    EXPECT_EQ(log_.count("KeyName [Down]"), 1);
}

TEST_F(LanguageRoad, AMirroredPageIsReadAndWalkedFromTheRight) {
    set_language("ar_AE.utf8");
    open_application();
    expect_order("RX Test", "TX Test");
    expect_order("Exit", "RX Test");
    go("Left", "RX Test");
    enter("Start RX Test");
    go_to_header("Exit");
    enter("Cancel");
    expect_order("Cancel", "Yes");
    go("Right", "Yes");
    operator_.press("Return");
    expect_orderly_end();
}

TEST_F(LanguageRoad, ChangedWhileRunningThePageFollowsAndKeepsItsState) {
    open_tx_test();
    open_picker(power_picker, 0, 3);
    choose(power_picker, 3);
    const auto page = operator_.texts();
    for (int times = 0; times < 2; ++times) {
        set_language("he_IL.utf8");
        expect_order("RX Test", "TX Test");
        expect_order("Exit", "3");
        operator_.wait_for_focus("3");
        set_language("en_GB.utf8");
        expect_order("TX Test", "RX Test");
        expect_order("3", "Exit");
        expect_soon("the page as before", [&] { return operator_.texts() == page; });
    }
    go_to_header("Exit");
    enter("Cancel");
    set_language("ar_AE.utf8");
    expect_order("Cancel", "Yes"); // a popup that is open follows, too
    operator_.wait_for_focus("Cancel");
    operator_.press("XF86Back");
    operator_.wait_for_focus("Exit");
}
