#include "end_to_end_test.h"
#include "support/sync_reader.h"

#include <atspi/atspi.h>
#include <thread>
#include <utility>

using testing::ElementsAre;

namespace {

constexpr const char* focused = "object:state-changed:focused";
constexpr const char* showing = "object:state-changed:showing";
constexpr const char* renamed = "object:property-change:accessible-name";

/**
 * What a screen reader would announce: focused widgets ("push button Exit"), new dialogs ("dialog Exit App"), and new
 * names of labels and of widgets with the focused widget's role ("spin button 7").
 */
std::vector<std::string> announcements;

std::string owned(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owner(text, g_free);
    return text == nullptr ? "" : text;
}

void hear(AtspiEvent* event, void* /*data*/) {
    static std::string focused_role;
    const std::string_view type = event->type;
    const std::string role = owned(atspi_accessible_get_role_name(event->source, nullptr));
    const bool begins = event->detail1 == 1;
    if (type == focused && begins)
        focused_role = role;
    if ((type == focused && begins) || (type == showing && begins && role == "dialog") ||
        (type == renamed && (role == focused_role || role == "label")))
        announcements.push_back(role + " " + owned(atspi_accessible_get_name(event->source, nullptr)));
    g_boxed_free(ATSPI_TYPE_EVENT, event);
}

void hear_pending_events() {
    while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
    }
}

/** Reads and operates the screen through the accessibility bus. */
class ScreenReaderTest : public EndToEndTest {
protected:
    /** Starts to listen, and waits until the application has noticed the listener. */
    void listen() {
        atspi_init();
        for (const char* const event : {focused, showing, renamed})
            atspi_event_listener_register_from_callback(hear, nullptr, nullptr, event, nullptr);
        expect_soon("an announcement", [this] {
            press("Down");
            press("Up");
            hear_pending_events();
            return !announcements.empty();
        });
        while (!std::exchange(announcements, {}).empty()) { // until there are no more
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
            hear_pending_events();
        }
    }

    /** Expects exactly these new announcements, in any order. */
    void expect_announcements(const std::vector<std::string>& wanted) {
        expect_soon("announcements " + testing::PrintToString(wanted), [&] {
            (void)reader_.read("velmora"); // after this synchronous call, earlier events have arrived
            hear_pending_events();
            return announcements.size() >= wanted.size();
        });
        EXPECT_THAT(std::exchange(announcements, {}), testing::UnorderedElementsAreArray(wanted));
    }

    /** Role, label and name of all widgets, once the accessibility tree has the order of the screen. */
    [[nodiscard]] std::vector<std::string> roles() {
        simulator::Screen screen({});
        expect_soon("the tree to have the order of the screen", [&] {
            screen = reader_.read("velmora");
            return reader_.read("velmora", simulator::Order::tree).texts() == screen.texts();
        });
        std::vector<std::string> roles;
        for (const simulator::Widget& widget : screen.widgets())
            roles.push_back(widget.role + " " + widget.label + widget.name);
        return roles;
    }

    simulator::SyncReader reader_;
};

TEST_F(ScreenReaderTest, WidgetsHaveRolesLabelsAndNames) {
    open_test("RX Test", "11");
    EXPECT_THAT(roles(), ElementsAre("heading Velmora", "push button TX Test", "push button RX Test",
                                     "push button Exit", "label Received Packets: ?",
                                     "push button Count Received Packets", "push button Reset Count",
                                     "label Channel:", "push button Channel:11", "push button Stop"));
    enter("11");
    EXPECT_THAT(roles(), ElementsAre("dialog Zigbee TX Channel", "spin button 11"));
    EXPECT_EQ(reader_.read("velmora").focused()->value, (simulator::WidgetValue{11, 11, 26}));
    press("XF86Back");
    activate("Exit");
    wait_for_focus("Cancel");
    EXPECT_THAT(roles(), ElementsAre("dialog Exit App", "label Do you want to exit ?", "push button Yes",
                                     "push button Cancel"));
}

TEST_F(ScreenReaderTest, AnnouncesFocusAndDialogs) {
    open_test("TX Test", "Set Power");
    listen();
    enter("0");
    expect_announcements({"dialog Zigbee TX Power", "spin button 0"});
    send_event(television_, "('ready',)"); // rebuilds the page behind the popup
    expect_announcements({"label Power: ", "label Channel: "});
    press("Right");
    expect_announcements({"spin button 1"});
    enter("1");
    expect_announcements({"push button 1"});
    press("Down*2");
    expect_announcements({"push button Set Channel", "push button Start Stream"});
    press("Return");
    expect_announcements({"push button Stop Stream"});
    EXPECT_THROW(activate("1"), simulator::Failure);
    press("Up");
    expect_announcements({"push button TX Test"});
    press("Right*2");
    expect_announcements({"push button RX Test", "push button Exit"});
    enter("Cancel");
    expect_announcements({"push button Yes", "push button Cancel", // the texts of the new buttons
                          "dialog Exit App", "push button Cancel"});
    send_event(television_, "('ready',)");
    expect_announcements({"label Power: ", "push button Set Power", "label Channel: ",
                          "push button Set Channel", "push button Start Stream", "push button Stop Test"});
    press("XF86Back");
    expect_announcements({"push button Set Power"});
}

TEST_F(ScreenReaderTest, AnnouncesNewTextsButNothingExtraWhenThePageChanges) {
    open_test("RX Test", "11");
    listen();
    press("Up");
    expect_announcements({"push button Reset Count"});
    for (int time = 0; time < 2; ++time) {
        press("Return");
        expect_announcements({"label Received Packets: 0"});
    }
    press("Down*2");
    expect_announcements({"push button 11", "push button Stop"});
    enter("Start RX Test");
    expect_announcements(
        {"push button Start RX Test", "push button Start RX Test"}); // for its new text and for its focus
    press("Up");
    expect_announcements({"push button RX Test"});
}

} // namespace
