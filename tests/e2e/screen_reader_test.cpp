#include "end_to_end_test.h"
#include "support/sync_reader.h"

#include <atspi/atspi.h>
#include <thread>
#include <utility>

using simulator::send_event;
using testing::ElementsAre;
using testing::UnorderedElementsAreArray;

namespace {

constexpr std::string_view focused = "object:state-changed:focused";
constexpr std::string_view showing = "object:state-changed:showing";
constexpr std::string_view renamed = "object:property-change:accessible-name";
constexpr std::array events = {focused, showing, renamed};

std::string owned(char* text) {
    const std::unique_ptr<char, decltype(&g_free)> owner(text, g_free);
    return text == nullptr ? "" : text;
}

/**
 * Records what a screen reader would announce: focused widgets ("push button Exit"), new dialogs ("dialog Exit App"),
 * and new names of labels and of widgets with the focused widget's role ("spin button 7").
 */
class Announcements {
public:
    Announcements() : listener_(nullptr, g_object_unref) {
        atspi_init();
        const auto heard = +[](AtspiEvent* event, void* self) {
            static_cast<Announcements*>(self)->hear(*event);
            g_boxed_free(ATSPI_TYPE_EVENT, event);
        };
        listener_.reset(atspi_event_listener_new(heard, this, nullptr));
        for (const auto event : events)
            atspi_event_listener_register(listener_.get(), event.data(), nullptr);
    }
    Announcements(const Announcements&) = delete;
    Announcements& operator=(const Announcements&) = delete;
    ~Announcements() {
        for (const auto event : events)
            atspi_event_listener_deregister(listener_.get(), event.data(), nullptr);
    }

    /** Processes pending events and returns the number of announcements. */
    [[nodiscard]] std::size_t count() const {
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
        return said_.size();
    }

    /** Returns and clears the announcements. */
    std::vector<std::string> take() { return std::exchange(said_, {}); }

private:
    void hear(const AtspiEvent& event) {
        const std::string role = owned(atspi_accessible_get_role_name(event.source, nullptr));
        const bool begins = event.detail1 == 1;
        if (event.type == focused && begins)
            focused_role_ = role;
        if ((event.type == focused && begins) || (event.type == showing && begins && role == "dialog") ||
            (event.type == renamed && (role == focused_role_ || role == "label")))
            said_.push_back(role + " " + owned(atspi_accessible_get_name(event.source, nullptr)));
    }

    std::unique_ptr<AtspiEventListener, decltype(&g_object_unref)> listener_;
    std::string focused_role_;
    std::vector<std::string> said_;
};

/** Reads and operates the screen through the accessibility bus. */
class ScreenReaderTest : public EndToEndTest {
protected:
    /** Starts to listen, and waits until the application has noticed the listener. */
    void listen() {
        announcements_.emplace();
        expect_soon("an announcement", [this] {
            press("Down");
            press("Up");
            return announcements_->count() > 0;
        });
        for (std::size_t heard = 0; heard != announcements_->count();) {
            heard = announcements_->count();
            std::this_thread::sleep_for(std::chrono::milliseconds(300));
        }
        announcements_->take();
    }

    /** Expects exactly these new announcements, in any order. */
    void expect_announcements(const std::vector<std::string>& wanted) {
        expect_soon("announcements " + testing::PrintToString(wanted), [&] {
            (void)reader_.read("velmora"); // a synchronous call: earlier events have arrived
            return announcements_->count() >= wanted.size();
        });
        EXPECT_THAT(announcements_->take(), UnorderedElementsAreArray(wanted));
    }

    /** Role, label and name of all widgets, once the accessibility tree has the order of the screen. */
    [[nodiscard]] std::vector<std::string> roles() {
        std::vector<std::string> roles;
        simulator::Screen screen({});
        expect_soon("the tree to have the order of the screen", [&] {
            screen = reader_.read("velmora");
            return reader_.read("velmora", simulator::Order::tree).texts() == screen.texts();
        });
        for (const simulator::Widget& widget : screen.widgets())
            roles.push_back(widget.role + " " + widget.label + widget.name +
                            (widget.chosen ? ", chosen" : ""));
        return roles;
    }

    simulator::SyncReader reader_;
    std::optional<Announcements> announcements_;
};

TEST_F(ScreenReaderTest, TextsHaveNamesAndRoles) {
    open_test("RX Test", "11");
    EXPECT_THAT(roles(), ElementsAre("heading Velmora", "push button TX Test", "push button RX Test, chosen",
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
    EXPECT_FALSE(reader_.read("velmora").find("1")->enabled);
    EXPECT_THROW(activate("1"), simulator::Failure);
    press("Up");
    expect_announcements({"push button TX Test"});
    press("Right*2");
    expect_announcements({"push button RX Test", "push button Exit"});
    enter("Cancel");
    expect_announcements({"push button Yes", "push button Cancel", "dialog Exit App",
                          "push button Cancel"}); // their first texts
    send_event(television_, "('ready',)");
    expect_announcements({"label Power: ", "push button Set Power", "label Channel: ",
                          "push button Set Channel", "push button Start Stream", "push button Stop Test"});
    press("XF86Back");
    expect_announcements({"push button Set Power"});
}

TEST_F(ScreenReaderTest, AnnouncesNewTextsButNothingBetweenPages) {
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
        {"push button Start RX Test", "push button Start RX Test"}); // its new text, and its focus
    press("Up");
    expect_announcements({"push button RX Test"});
}

} // namespace
