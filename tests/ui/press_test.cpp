/** What the screen shows after a press, whatever comes of it. */
// Accessible states are declared as beta and protected in Elementary 1.26.
#define EFL_BETA_API_SUPPORT
#define EFL_ACCESS_OBJECT_PROTECTED

#include "support/pages.h"

#include "common/dropped_press.h"
#include "support/sleep_recorder.h"
#include "ui_driver/keyboard.h"
#include "ui_driver/screenshot.h"

#include <efl_access_object.eo.h>
#include <filesystem>
#include <thread>

namespace {

using namespace std::chrono_literals;
using simulator::Pixels;
using Clock = std::chrono::steady_clock;

constexpr auto hang = 30s; // it should be 120 ms, which a busy machine does not keep

const std::filesystem::path programs = "/opt/usr/apps/com.kelsor.tv.brimhub/bin";

/** A program of the radio is not there while this lives. */
class Missing {
public:
    explicit Missing(const char* program) : program_(programs / program), away_(programs / "away") {
        std::filesystem::rename(program_, away_);
    }
    ~Missing() { std::filesystem::rename(away_, program_); }
    Missing(const Missing&) = delete;
    Missing& operator=(const Missing&) = delete;

private:
    std::filesystem::path program_;
    std::filesystem::path away_;
};

/** A key, and what the radio replies then. */
struct Step {
    const char* name;
    const char* key;
    const char* on; /**< what has the focus */
    const char* method = nullptr;
    const char* reply = nullptr;
    bool lasts = false;            /**< whether the screen has changed in the end */
    const char* renewed = nullptr; /**< what shows that its text was set */
};

class Press : public test::Pages {
protected:
    static void rest(std::chrono::milliseconds time) {
        test::await([] { return false; }, time);
    }

    /** On a connection of its own: what is not flushed is not seen. */
    [[nodiscard]] Pixels look() const { return Pixels::of_screen(display_.get()); }

    [[nodiscard]] Pixels look_at(const Eina_Rectangle& area) const {
        return {display_.get(), area.x, area.y, area.w, area.h};
    }
    /** Where a button has neither text nor sign. */
    [[nodiscard]] Pixels fill_of(const Evas_Object* button) const {
        const Eina_Rectangle place = test::geometry(button);
        return look_at({place.x + place.w * 17 / 20, place.y + place.h / 2, 1, 1});
    }
    [[nodiscard]] Pixels fill_of(const std::string& button) const { return fill_of(screen->find(button)); }

    static int plate_width(const Evas_Object* widget) {
        const Evas_Object* const drawn = elm_layout_edje_get(widget);
        int width = 0;
        edje_object_part_geometry_get(drawn, "fill", nullptr, nullptr, &width, nullptr);
        return width;
    }

    void remember_screen() { before_.emplace(look()); }
    [[nodiscard]] bool has_changed() const { return !(look() == *before_); }
    /** Around the widget alone: a look at the whole screen takes a busy machine longer than a bump. */
    [[nodiscard]] bool changes(const Evas_Object* widget, const std::function<void()>& act) const {
        const auto [x, y, width, height] = test::geometry(widget);
        const Eina_Rectangle area{x - 12, y, 24, height};
        const Pixels before = look_at(area);
        act();
        const auto end = Clock::now() + hang;
        while (Clock::now() < end) {
            if (!(look_at(area) == before))
                return true;
            ecore_main_loop_iterate();
        }
        return false;
    }

    /**
     * The screen changes before the application is called, and the pressed look stays a while; in the end the screen is
     * another, or as it was.
     */
    void take(const Step& step) {
        SCOPED_TRACE(step.name);
        if (step.method != nullptr)
            radio.answer(step.method, step.reply);
        Evas_Object* const widget = screen->find(step.on);
        ASSERT_NE(widget, nullptr);
        elm_object_focus_set(widget, EINA_TRUE);
        rest(700ms); // until what came before has faded
        remember_screen();
        const Pixels fill = fill_of(widget);
        const Eina_Rectangle value =
            test::geometry(screen->find(step.renewed == nullptr ? step.on : step.renewed));
        const Pixels old = look_at(value);
        called_.reset();
        pressed_ = widget;
        const int width = plate_width(widget);
        if (*step.on == '[')
            evas_object_event_callback_add(widget, EVAS_CALLBACK_KEY_DOWN, note_call, this);
        else
            evas_object_smart_callback_priority_add(widget, "pressed", EVAS_CALLBACK_PRIORITY_BEFORE,
                                                    note_call, this);
        EXPECT_TRUE(changes(widget, [&] { screen->type(step.key); }));
        EXPECT_TRUE(step.method == nullptr || called_ == true);
        EXPECT_TRUE(step.method == nullptr || width_then_ < width) << "not pressed in";
        EXPECT_TRUE(test::await([&] { return fill_of(widget) == fill; }, hang)) << "stays pressed";
        EXPECT_TRUE(step.method == nullptr || Clock::now() - called_at_ > 100ms) << "nobody sees that";
        EXPECT_TRUE(step.renewed == nullptr || !(look_at(value) == old));
        evas_object_event_callback_del_full(widget, EVAS_CALLBACK_KEY_DOWN, note_call, this);
        evas_object_smart_callback_del_full(widget, "pressed", note_call, this);
        rest(900ms);
        EXPECT_EQ(has_changed(), step.lasts);
    }

private:
    /** A smart or event callback. */
    template <class... Arguments>
    static void note_call(void* self, Arguments...) {
        auto* const press = static_cast<Press*>(self);
        press->called_at_ = Clock::now();
        press->called_ = press->has_changed();
        press->width_then_ = plate_width(press->pressed_);
    }

    simulator::Display display_ = simulator::open_display();
    std::optional<Pixels> before_;
    std::optional<bool> called_; /**< with the screen changed by then */
    Clock::time_point called_at_;
    const Evas_Object* pressed_ = nullptr;
    int width_then_ = 0;
};

TEST_F(Press, IsAnsweredOnTheScreenWhateverComesOfIt) {
    take({"no tab there", "Left", "TX Test"});
    open("TX Test");
    take({"start refused", "Return", "Start Stream", "ember_start_stream", "(3,)", true});
    const Pixels idle = fill_of("Stop Test");
    take({"started", "Return", "Start Stream", "ember_start_stream", "(0,)", true, "Start Stream"});
    take({"no button below", "Down", "Stop Test"});
    for (const char* const button : {"Set Channel", "Stop Stream"})
        EXPECT_FALSE(fill_of(button) == idle) << button;
    for (const Step& step :
         {Step{"stop refused", "Return", "Stop Stream", "ember_stop_stream", "(3,)", true},
          {"stopped", "Return", "Stop Stream", "ember_stop_stream", "(0,)", true, "Stop Stream"},
          {"end refused", "Return", "Stop Test", "ember_stop", "(3,)", true}})
        take(step);
    for (const char* const button : {"Set Channel", "Start Stream"})
        EXPECT_TRUE(fill_of(button) == idle) << button;
    open("RX Test");
    const char* const count = "ember_get_rx_statistics";
    const char* const reset = "ember_reset_rx_statistics";
    const char* const label = "Received Packets: 57";
    for (const Step& step :
         {Step{"count", "Return", "Count Received Packets", count, "('57 packets', 0)", true},
          {"the same count", "Return", "Count Received Packets", count, "('57 packets', 0)", false, label},
          {"count refused", "Return", "Count Received Packets", count, "('', 3)", true},
          {"reset refused", "Return", "Reset Count", reset, "(5,)", true, label},
          {"refused again", "Return", "Reset Count", reset, "(5,)", false, "Received Packets: Reset Failed"}})
        take(step);
    activate("11");
    take({"no number below", "Left", "[11]"});
    take({"choice refused", "Return", "[11]", "ember_set_channel", "(3,)", true});
}

TEST_F(Press, ThatFreezesTheScreenHasShownWhyBefore) {
    activate("TX Test");
    elm_object_focus_set(screen->find("RX Test"), EINA_TRUE);
    rest(200ms);
    const Pixels idle = fill_of("Start TX Test");
    std::optional<Pixels> frozen;
    std::optional<Pixels> waiting;
    const SleepRecorder during([&](std::size_t) {
        if (!frozen)
            frozen.emplace(look());
        std::this_thread::sleep_for(20ms); // the relay comes up
    });
    {
        const Missing host("zigbeed");
        activate("Start TX Test");
        ASSERT_NE(screen->find("Please Wait..."), nullptr);
        waiting.emplace(fill_of("Please Wait..."));
        const auto states = efl_access_object_state_set_get(screen->find("Please Wait..."));
        EXPECT_TRUE(STATE_TYPE_GET(states, EFL_ACCESS_STATE_TYPE_BUSY));
        EXPECT_TRUE(test::await([&] { return look() == frozen; }))
            << "the dots come round to where they were";
    }
    const Missing relay("socat");
    screen->press("Down");
    screen->press("Return");
    ASSERT_NE(screen->find("Failed to start child process"), nullptr);
    rest(300ms);
    const Pixels failed = fill_of("Failed to start child process");
    EXPECT_FALSE(*waiting == idle || failed == idle || failed == *waiting);
    for (const auto& [name, press] :
         {std::pair<const char*, std::function<void()>>{"OK", [this] { screen->type("Return"); }},
          {"dropped", [] { ecore_event_add(platform::dropped_press_event(), nullptr, nullptr, nullptr); }}}) {
        EXPECT_EQ(screen->focused(), "");
        remember_screen();
        EXPECT_TRUE(changes(screen->find("Failed to start child process"), press)) << name;
        rest(400ms);
        EXPECT_FALSE(has_changed()) << name;
    }
}

} // namespace
