/** Checks the visible feedback for presses. */
#include "support/toolkit_window.h"

#include "common/dropped_press.h"

extern "C" {
#include <efl_access_object.eo.h>
}

namespace {

using namespace std::chrono_literals;
using simulator::Pixels;
using test::fill_of;
using Clock = std::chrono::steady_clock;

class Press : public test::ToolkitWindow {
protected:
    Press() {
        evas_object_smart_callback_add(button, "pressed", on_press, this);
        evas_object_event_callback_add(spinner, EVAS_CALLBACK_KEY_DOWN, on_press, this);
        test::settle();
        elm_object_focus_set(button, EINA_TRUE);
        test::run_for(300ms);
    }

    /** The pixels around a widget's left edge. */
    static Pixels edge_of(const Evas_Object* widget) {
        const auto [x, y, width, height] = test::geometry(widget);
        return test::look_at({x - 12, y, 24, height});
    }
    static Pixels all_of(const Evas_Object* widget) { return test::look_at(test::geometry(widget)); }

    static int plate_width(const Evas_Object* widget) {
        return test::geometry(edje_object_part_object_get(elm_layout_edje_get(widget), "fill")).w;
    }

    /** Expects the edge to change and finally to return to its initial look. */
    static void expect_bump(const char* what, const Evas_Object* widget, const std::function<void()>& act) {
        const Pixels before = edge_of(widget);
        act();
        for (const auto end = Clock::now() + 30s; edge_of(widget) == before && Clock::now() < end;)
            ecore_main_loop_iterate();
        EXPECT_FALSE(edge_of(widget) == before) << what;
        test::run_for(400ms);
        EXPECT_TRUE(edge_of(widget) == before) << what;
    }

    /**
     * Expects the pressed look to be drawn before the application is called, and to last a while.
     *
     * @param result  what the application does.
     * @param changed the widget that then looks different.
     */
    void expect_press(const char* what, Evas_Object* widget, const std::function<void()>& result,
                      const Evas_Object* changed) {
        SCOPED_TRACE(what);
        elm_object_focus_set(widget, EINA_TRUE);
        test::run_for(2500ms); // until earlier feedback has faded
        const int width = plate_width(widget);
        const Pixels edge = edge_of(widget);
        const Pixels fill = fill_of(widget);
        const Pixels old = all_of(changed);
        int calls = 0;
        Clock::time_point called_at;
        during_press = [&] {
            ++calls;
            called_at = Clock::now();
            EXPECT_FALSE(edge_of(widget) == edge) << "not drawn before the call";
            EXPECT_LT(plate_width(widget), width) << "not smaller";
            result();
        };
        type("Return");
        EXPECT_TRUE(test::await([&] { return calls != 0 && fill_of(widget) == fill; })) << "stays pressed";
        EXPECT_GT(Clock::now() - called_at, 100ms) << "too short to be visible";
        EXPECT_EQ(calls, 1);
        EXPECT_FALSE(all_of(changed) == old);
        during_press = [] {};
    }

    Evas_Object* button = add_button("Go");
    Evas_Object* other = add_button("Other");
    Evas_Object* label = createTextbox(page, "Count: 7");
    Evas_Object* spinner = createSpinner(page);
    std::function<void()> during_press = [] {};

private:
    /** A smart or event callback. */
    template <class... Arguments>
    static void on_press(void* self, Arguments...) {
        static_cast<Press*>(self)->during_press();
    }
};

TEST_F(Press, ShowsPressedLookAndResult) {
    const Pixels idle = fill_of(other);
    const auto allow = [this](Eina_Bool allowed) {
        return [=, this] { elm_object_focus_allow_set(other, allowed); };
    };
    const auto set_label = [this] { elm_vell_textbox_text_set(label, "Count: 7"); };
    const auto do_nothing = [] {};
    expect_press("the press has no effect", button, do_nothing, button);
    expect_press("another widget's text is set to the same value", button, set_label, label);
    expect_press(
        "the button's text is set again", button, [this] { elm_vell_button_text_set(button, "Go"); }, button);
    expect_press("another button is locked", button, allow(EINA_FALSE), other);
    EXPECT_FALSE(fill_of(other) == idle);
    elm_object_focus_set(spinner, EINA_TRUE);
    test::settle();
    EXPECT_FALSE(fill_of(button) == idle) << "a running stream is not shown";
    expect_press("another button is unlocked", button, allow(EINA_TRUE), other);
    expect_press("accepting a number has no effect", spinner, do_nothing, spinner);
    expect_press("accepting a number has an effect", spinner, set_label, label);
    expect_bump("the number is at its limit", spinner, [] { type("Left"); });
    elm_object_focus_set(other, EINA_TRUE);
    test::run_for(300ms);
    expect_bump("no widget to the right", other, [] { type("Right"); });
    EXPECT_TRUE(fill_of(button) == idle);
}

TEST_F(Press, GivingUpTheFocusShowsWaitingThenFailure) {
    const Pixels idle = fill_of(other);
    std::optional<Pixels> waiting;
    std::optional<Pixels> frozen;
    during_press = [&] {
        elm_object_focus_set(button, EINA_FALSE);
        waiting.emplace(fill_of(button));
        frozen.emplace(all_of(button));
    };
    press("Return");
    EXPECT_TRUE(STATE_TYPE_GET(efl_access_object_state_set_get(button), EFL_ACCESS_STATE_TYPE_BUSY));
    EXPECT_TRUE(test::await([&] { return !(all_of(button) == *frozen); })) << "the dots do not move";
    EXPECT_TRUE(test::await([&] { return all_of(button) == *frozen; })) << "the dots do not cycle";
    during_press = [this] {
        elm_object_focus_set(button, EINA_FALSE);
        elm_vell_button_text_set(button, "Failed");
    };
    press("Down");
    press("Return");
    test::run_for(300ms);
    const Pixels failed = fill_of(button);
    EXPECT_FALSE(*waiting == idle || failed == idle || failed == *waiting);
    EXPECT_EQ(focused(), "");
    expect_bump("OK without a focus", button, [] { type("Return"); });
    expect_bump("a dropped press", button,
                [] { ecore_event_add(platform::dropped_press_event(), nullptr, nullptr, nullptr); });
}

} // namespace
