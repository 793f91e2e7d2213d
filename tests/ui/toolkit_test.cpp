/** Tests the documented behaviour of the toolkit's widgets. */
#include "efl_1_26/toolkit/accessible.h"
#include "support/settings_folder.h"
#include "support/toolkit_window.h"

#include <cmath>
extern "C" {
#include <efl_access_object.eo.h>
#include <efl_access_value.eo.h>
}

namespace {

using test::geometry;
using test::settle;
using testing::ElementsAre;
using testing::HasSubstr;

class Toolkit : public test::ToolkitWindow {
protected:
    /** Presses and releases the mouse in the middle of an area. */
    void click(const Eina_Rectangle& area) const {
        Evas* const canvas = evas_object_evas_get(window);
        evas_event_feed_mouse_move(canvas, area.x + area.w / 2, area.y + area.h / 2, 0, nullptr);
        evas_event_feed_mouse_down(canvas, 1, EVAS_BUTTON_NONE, 0, nullptr);
        evas_event_feed_mouse_up(canvas, 1, EVAS_BUTTON_NONE, 0, nullptr);
        settle();
    }
};

/** A smart or event callback that counts its calls in an int. */
template <class... Arguments>
void count(void* calls, Arguments...) {
    ++*static_cast<int*>(calls);
}

TEST_F(Toolkit, ButtonEmitsPressedOncePerActivationUnlessLocked) {
    Evas_Object* const button = add_button("Go");
    settle();
    int pressed = 0;
    evas_object_smart_callback_add(button, "pressed", count, &pressed);
    elm_object_focus_set(button, EINA_TRUE);
    for (const auto& [key, presses] : {std::pair{"Return", 1}, {"KP_Enter", 2}, {"a", 2}}) {
        press(key);
        EXPECT_EQ(pressed, presses) << key;
    }
    for (const auto& [allowed, presses] : {std::pair{EINA_TRUE, 3}, {EINA_FALSE, 3}, {EINA_TRUE, 4}}) {
        elm_object_focus_allow_set(button, allowed);
        click(geometry(button));
        EXPECT_EQ(pressed, presses);
    }
}

TEST_F(Toolkit, ButtonExposesLabelAndStatesEvenAfterAThemeChange) {
    const Evas_Object* const label = createTextbox(page, "Power: ");
    Evas_Object* const button = add_button("7");
    add_button("not labelled");
    std::vector<const void*> labelled;
    Eina_Iterator* const relations = efl_access_object_relations_get(label);
    for (Efl_Access_Relation* each = nullptr; eina_iterator_next(relations, reinterpret_cast<void**>(&each));)
        if (each->type == EFL_ACCESS_RELATION_TYPE_LABEL_FOR)
            labelled.push_back(eina_list_data_get(each->objects));
    eina_iterator_free(relations);
    EXPECT_THAT(labelled, ElementsAre(button));
    int changes = 0;
    const auto note = [](void* noted, const Efl_Event* event) {
        *static_cast<int*>(noted) += event->desc == EFL_ACCESS_OBJECT_EVENT_STATE_CHANGED ? 1 : 0;
    };
    Efl_Access_Event_Handler* const listener = efl_access_object_event_handler_add(note, &changes);
    for (const bool holds : {true, false, true}) {
        vell::set_accessible_state(button, EFL_ACCESS_STATE_TYPE_BUSY, holds);
        elm_object_focus_allow_set(button, holds);
        elm_theme_flush(nullptr);
        settle();
        const auto states = efl_access_object_state_set_get(button);
        for (const auto type :
             {EFL_ACCESS_STATE_TYPE_BUSY, EFL_ACCESS_STATE_TYPE_ENABLED, EFL_ACCESS_STATE_TYPE_SENSITIVE})
            EXPECT_EQ(STATE_TYPE_GET(states, type) != 0, holds) << type;
    }
    EXPECT_EQ(changes, 7) << "three changes of busy, two of enabled, two of sensitive";
    efl_access_object_event_handler_del(listener);
}

TEST_F(Toolkit, AppendedItemIsShownOnceAtTheNextRendering) {
    for (const bool render : {false, true}) {
        Evas_Object* const button = add_button("Go");
        EXPECT_FALSE(evas_object_visible_get(button));
        int shown = 0; // how often, after the append
        evas_object_event_callback_add(button, EVAS_CALLBACK_SHOW, count, &shown);
        render ? elm_vell_root_layout_render(page) : settle();
        EXPECT_TRUE(evas_object_visible_get(button));
        settle();
        EXPECT_EQ(shown, 1);
    }
    add_button("deleted before it is shown");
    elm_vell_layout_clear(page);
    settle();
    EXPECT_THAT(seen(), ElementsAre());
}

TEST_F(Toolkit, TextIsNeverMarkup) {
    const char* const text = "<b>&amp; \\ 5 > 3";
    Evas_Object* const button = add_button(text);
    createTextbox(page, text);
    settle();
    EXPECT_THAT(seen(), ElementsAre(text, text));
    EXPECT_STREQ(elm_vell_button_text_get(button), text);
    elm_vell_button_text_set(button, nullptr);
    EXPECT_STREQ(elm_vell_button_text_get(button), "");
}

TEST_F(Toolkit, UnknownColorIsLogged) {
    Evas_Object* const textbox = elm_vell_textbox_add(page);
    for (const char* const good : {"#FFFFFFAF", "#a0B1c2", "CC_BG210"})
        elm_vell_layout_bg_color_set(page, good);
    EXPECT_THAT(log.text(), testing::Not(HasSubstr("colour")));
    for (const std::string bad :
         {"", "#", "#12345", "#GG000000", "#123456789", "#-1234567", "NO_SUCH_CLASS"}) {
        elm_vell_textbox_style_property_set(textbox, "color", bad.c_str());
        EXPECT_THAT(log.text(), HasSubstr("no such colour: " + bad + "\n"));
    }
    elm_vell_textbox_style_property_set(textbox, "shadow", "#FFFFFFFF");
    EXPECT_THAT(log.text(), HasSubstr("no such style property of a textbox: shadow"));
}

TEST_F(Toolkit, SpinnerStepsWithinItsLimitsByMouseKeysAndAssistiveTechnology) {
    Evas_Object* const spinner = setupSpinner(createSpinner(page), 11, 13);
    Evas_Object* const other = add_button("other");
    std::string received; // each key that reaches the callbacks, with the displayed number
    const auto note = [](void* data, Evas*, Evas_Object* object, void* event) {
        *static_cast<std::string*>(data) += static_cast<Evas_Event_Key_Down*>(event)->key +
                                            std::to_string(std::lround(elm_spinner_value_get(object))) + " ";
    };
    evas_object_event_callback_add(spinner, EVAS_CALLBACK_KEY_DOWN, note, &received);
    settle();
    elm_object_focus_set(other, EINA_TRUE);
    const auto click_on = [&](const std::string& clicked, int times) {
        for (const test::Drawn& text : texts())
            for (int time = 0; text.text == clicked && time < times; ++time)
                click(geometry(text.object));
        return std::lround(elm_spinner_value_get(spinner));
    };
    const std::string left_arrow = "\u2039";
    EXPECT_EQ(click_on("\u203A", 3), 13);
    EXPECT_EQ(click_on(left_arrow, 3), 11);
    elm_config_mirrored_set(EINA_TRUE);
    EXPECT_EQ(click_on(left_arrow, 3), 13);
    for (const auto& [number, taken] : {std::pair(11.6, true), {13.1, false}, {std::nan(""), false}})
        EXPECT_EQ(efl_access_value_and_text_set(spinner, number, nullptr) != EINA_FALSE, taken) << number;
    EXPECT_EQ(elm_spinner_value_get(spinner), 12.0);
    settle();
    for (const test::Drawn& text : texts())
        EXPECT_GT(test::contrast(geometry(text.object)), 4.5)
            << text.text << " is as dim as an arrow at a limit";
    click_on("12", 2);
    for (const char* const key : {"Right", "Return", "KP_Enter", "5", "Up", "Down", "Left"})
        press(key);
    EXPECT_EQ(received, "Return12 Return12 Right11 Return11 KP_Enter11 511 Up12 Down11 Left12 ");
    evas_event_feed_mouse_wheel(evas_object_evas_get(window), 0, 1, 0, nullptr);
    settle();
    EXPECT_EQ(elm_object_focused_object_get(window), spinner);
    EXPECT_EQ(elm_spinner_value_get(spinner), 11.0);
    elm_object_disabled_set(spinner, EINA_TRUE);
    EXPECT_FALSE(efl_access_value_and_text_set(spinner, 12.0, nullptr));
    EXPECT_EQ(click_on(left_arrow, 1), 11);
    elm_object_disabled_set(spinner, EINA_FALSE);
    evas_object_show(elm_vell_popup_add(page));
    EXPECT_FALSE(efl_access_value_and_text_set(spinner, 12.0, nullptr)) << "behind a popup";
}

TEST_F(Toolkit, PopupTakesTheFocusAndReturnsItWhenHidden) {
    elm_object_focus_set(add_button("behind"), EINA_TRUE);
    Evas_Object* const picker = createPopup(page, "Number");
    Evas_Object* const spinner = createSpinner(createPopupContent(page, picker));
    Evas_Object* const question = createPopup(page, "Question");
    Evas_Object* const yes = createPopupButton(question, "Yes");
    Evas_Object* const cancel = createPopupButton(question, "Cancel");
    Evas_Object* const first = elm_vell_button_add(question);
    elm_vell_popup_button_set(question, first, 1);
    const auto take_focus = [](void*, Evas*, Evas_Object* shown, void*) {
        elm_object_focus_set(shown, EINA_TRUE);
    };
    for (Evas_Object* const widget : {spinner, cancel})
        evas_object_event_callback_add(widget, EVAS_CALLBACK_SHOW, take_focus, nullptr);
    settle();
    for (const auto& [popup, wanted] : {std::pair(picker, spinner), std::pair(question, cancel)}) {
        evas_object_show(popup);
        settle();
        EXPECT_EQ(elm_object_focused_object_get(window), wanted) << "when first shown";
        elm_popup_dismiss(popup);
        for (int time = 0; time < 2; ++time) {
            settle();
            evas_object_show(popup);
            elm_popup_dismiss(popup);
        }
        evas_object_show(popup);
        test::run_for(std::chrono::milliseconds(300)); // longer than any animation
        EXPECT_EQ(elm_object_focused_object_get(window), wanted);
        popup == picker ? evas_object_del(popup) : elm_popup_dismiss(popup);
        settle();
        press("Tab");
        EXPECT_EQ(focused(), "behind");
        EXPECT_THAT(seen(), ElementsAre("behind"));
    }
    evas_object_show(question);
    elm_vell_layout_clear(page); // deletes the widget that had the focus
    settle();
    EXPECT_EQ(focused(), "Cancel");
    EXPECT_LT(geometry(first).x, geometry(yes).x);
    elm_popup_dismiss(question);
    settle();
    EXPECT_THAT(seen(), ElementsAre());
}

TEST_F(Toolkit, LayoutUnitFits240TimesIntoTheWidthAnd135TimesIntoTheHeight) {
    EXPECT_EQ(elm_vell_unit_to_pixel(240.0), 1280);
    EXPECT_EQ(elm_vell_unit_to_pixel(10.0), 53); // 53.3, rounded
    for (const auto& [setting, width] : {std::pair("960x540", 960), std::pair("1280x540", 960),
                                         std::pair("480x720", 480), std::pair("wide", 1280)}) {
        const test::SettingsFolder settings(std::string("[screen]\nsize=") + setting + "\n");
        Evas_Object* const other = open_window();
        EXPECT_EQ(elm_vell_unit_to_pixel(240.0), width) << setting;
        evas_object_del(other);
    }
}

TEST_F(Toolkit, CallsWithNullOrUnsuitableWidgetsAreIgnored) {
    Evas_Object* const spinner = createSpinner(page);
    Evas_Object* const button = add_button("Go");
    Evas_Object* const foreign = elm_label_add(window);
    settle();
    const auto before = seen();
    const Eina_Rectangle area = geometry(button);
    for (Evas_Object* const widget : {spinner, foreign, static_cast<Evas_Object*>(nullptr)}) {
        for (const auto set_text :
             {elm_vell_layout_bg_color_set, elm_vell_header_text_set, elm_vell_textbox_text_set,
              elm_vell_button_text_set, elm_vell_popup_title_set})
            set_text(widget, "#00000000");
        for (const auto set_number : {elm_vell_root_layout_set, elm_vell_layout_align_set,
                                      elm_vell_textbox_text_opacity_set, elm_vell_button_zoom_set})
            set_number(widget, 1);
        for (const auto set_content : {elm_vell_header_content_set, elm_vell_subheader_content_set})
            set_content(widget, page);
        elm_vell_root_layout_render(widget);
        elm_vell_layout_item_append(widget, button, 9, 9);
        elm_vell_layout_clear(widget);
        elm_vell_header_uiplate_enable(widget, true);
        elm_vell_textbox_style_property_set(widget, "color", "#00000000");
        EXPECT_STREQ(elm_vell_button_text_get(widget), "");
        elm_vell_popup_message_set(widget, "text", 9);
        elm_vell_popup_content_set(widget, page, 9, 9);
        elm_vell_popup_button_set(widget, button, 1);
    }
    for (Evas_Object* const widget : {foreign, static_cast<Evas_Object*>(nullptr)}) {
        elm_vell_object_weight_set(widget, 2.0);
        elm_vell_layout_item_append(page, widget, 9, 9);
        EXPECT_EQ(elm_vell_spinner_native_get(widget), nullptr);
    }
    for (const int invalid : {2, 7, -1})
        elm_vell_object_resize_policy_set(button, invalid, invalid);
    elm_vell_object_weight_set(button, -1.0);
    for (const auto add : {elm_vell_bg_add, elm_vell_layout_add, elm_vell_header_add, elm_vell_textbox_add,
                           elm_vell_button_add, elm_vell_spinner_add, elm_vell_popup_add})
        EXPECT_EQ(add(nullptr), nullptr);
    settle();
    EXPECT_EQ(seen(), before);
    EXPECT_TRUE(test::is_inside(geometry(button), area) && test::is_inside(area, geometry(button)));
    EXPECT_FALSE(elm_vell_manager_init(nullptr));
}

} // namespace
