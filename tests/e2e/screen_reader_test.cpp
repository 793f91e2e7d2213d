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
 * Notes what a screen reader would announce of itself: what gets the focus ("push button Exit"), dialogs that appear
 * ("dialog Exit App"), and new names of labels and of what has the same role as the focused widget ("spin button 7").
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

    /** Their number, with what has come in meanwhile. */
    [[nodiscard]] std::size_t count() const {
        while (g_main_context_iteration(nullptr, FALSE) != FALSE) {
        }
        return said_.size();
    }

    /** Returns and forgets them. */
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

/** Reads the screen through a screen reader and uses it through its actions. */
class ScreenReaderTest : public EndToEndTest {
protected:
    /** Listens from now on. The application hears of a listener only some time after there is one. */
    void listen() {
        announcements_.emplace();
        expect_soon("the application to speak", [this] {
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

    /** Expects exactly these announcements since the last time. */
    void expect_said(const std::vector<std::string>& wanted) {
        expect_soon("announcements " + testing::PrintToString(wanted), [&] {
            (void)reader_.read("velmora"); // what came before the answer has been announced
            return announcements_->count() >= wanted.size();
        });
        EXPECT_THAT(announcements_->take(), UnorderedElementsAreArray(wanted));
    }

    /** Role, label and name of everything on the screen, in the order of the screen and of the tree. */
    [[nodiscard]] std::vector<std::string> roles() {
        std::vector<std::string> roles;
        simulator::Screen screen({});
        expect_soon("the tree to have the order of the screen", [&] {
            screen = reader_.read("velmora");
            return reader_.read("velmora", simulator::Places::unasked).texts() == screen.texts();
        });
        for (const simulator::Widget& widget : screen.widgets())
            roles.push_back(widget.role + " " + widget.label + widget.name +
                            (widget.chosen ? ", chosen" : ""));
        return roles;
    }

    simulator::SyncReader reader_{std::chrono::seconds(1)};
    std::optional<Announcements> announcements_;
};

TEST_F(ScreenReaderTest, EveryTextHasItsNameAndRole) {
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

TEST_F(ScreenReaderTest, SaysWhatIsFocusedAndWhatAppears) {
    open_test("TX Test", "Set Power");
    listen();
    enter("0");
    expect_said({"dialog Zigbee TX Power", "spin button 0"});
    send_event(television_, "('ready',)"); // another page behind the popup
    expect_said({"label Power: ", "label Channel: "});
    press("Right");
    expect_said({"spin button 1"});
    enter("1");
    expect_said({"push button 1"});
    press("Down*2");
    expect_said({"push button Set Channel", "push button Start Stream"});
    press("Return");
    expect_said({"push button Stop Stream"});
    EXPECT_FALSE(reader_.read("velmora").find("1")->enabled);
    EXPECT_THROW(activate("1"), simulator::Failure);
    press("Up");
    expect_said({"push button TX Test"});
    press("Right*2");
    expect_said({"push button RX Test", "push button Exit"});
    enter("Cancel");
    expect_said(
        {"push button Yes", "push button Cancel", "dialog Exit App", "push button Cancel"}); // first texts
    send_event(television_, "('ready',)");
    expect_said({"label Power: ", "push button Set Power", "label Channel: ", "push button Set Channel",
                 "push button Start Stream", "push button Stop Test"});
    press("XF86Back");
    expect_said({"push button Set Power"});
}

TEST_F(ScreenReaderTest, SaysEachTextThatIsSetAndNothingOnTheWayToTheNextPage) {
    open_test("RX Test", "11");
    listen();
    press("Up");
    expect_said({"push button Reset Count"});
    for (int time = 0; time < 2; ++time) {
        press("Return");
        expect_said({"label Received Packets: 0"});
    }
    press("Down*2");
    expect_said({"push button 11", "push button Stop"});
    enter("Start RX Test");
    expect_said(
        {"push button Start RX Test", "push button Start RX Test"}); // its text, and that it has the focus
    press("Up");
    expect_said({"push button RX Test"});
}

} // namespace
