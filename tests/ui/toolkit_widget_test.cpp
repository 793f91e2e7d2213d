// Accessibility is declared as beta and protected in Elementary 1.26.
#define EFL_BETA_API_SUPPORT
#define EFL_ACCESS_ACTION_PROTECTED
#define EFL_ACCESS_OBJECT_PROTECTED
#define EFL_ACCESS_VALUE_PROTECTED

#include "efl_1_26/toolkit/accessible.h"
#include "support/settings_folder.h"
#include "support/toolkit_window.h"

#include <algorithm>
#include <cmath>
#include <gmock/gmock.h>
extern "C" {
#include <efl_access_action.eo.h>
#include <efl_access_value.eo.h>
}

namespace {

using test::geometry;
using test::settle;
using testing::HasSubstr;
using testing::IsEmpty;

class ToolkitWidget : public test::ToolkitWindow {};

TEST_F(ToolkitWidget, ButtonIsPressedExactlyOnceForEachActivationUnlessItIsBarred) {
    Evas_Object* const button = add_button("Go");
    settle();
    int pressed = 0;
    evas_object_smart_callback_add(button, "pressed", test::count, &pressed);
    elm_object_focus_set(button, EINA_TRUE);
    for (const auto& [key, presses] : {std::pair{"Return", 1}, {"KP_Enter", 2}, {"a", 2}}) {
        screen.press(key);
        EXPECT_EQ(pressed, presses) << key;
    }
    for (const auto& [allowed, presses] : {std::pair{EINA_TRUE, 3}, {EINA_FALSE, 3}, {EINA_TRUE, 4}}) {
        elm_object_focus_allow_set(button, allowed);
        screen.click(geometry(button));
        EXPECT_EQ(pressed, presses);
    }
}

TEST_F(ToolkitWidget, AssistiveTechnologyHearsOfAButtonsLabelAndStatesAlsoInANewTheme) {
    Evas_Object* const label = elm_vell_textbox_add(page);
    elm_vell_textbox_text_set(label, "Power: ");
    elm_vell_layout_item_append(page, label, 100, 20);
    Evas_Object* const button = add_button("7");
    add_button("not labelled");
    Eina_Iterator* const relations = efl_access_object_relations_get(label);
    int labelled = 0;
    for (Efl_Access_Relation* relation = nullptr;
         eina_iterator_next(relations, reinterpret_cast<void**>(&relation));)
        labelled += relation->type == EFL_ACCESS_RELATION_TYPE_LABEL_FOR &&
                    eina_list_count(relation->objects) == 1 &&
                    eina_list_data_get(relation->objects) == button;
    eina_iterator_free(relations);
    EXPECT_EQ(labelled, 1);
    const auto says = [button](Efl_Access_State_Type type) {
        return STATE_TYPE_GET(efl_access_object_state_set_get(button), type) != 0;
    };
    int said = 0;
    const auto note = [](void* changes, const Efl_Event* event) {
        *static_cast<int*>(changes) += event->desc == EFL_ACCESS_OBJECT_EVENT_STATE_CHANGED ? 1 : 0;
    };
    Efl_Access_Event_Handler* const listener = efl_access_object_event_handler_add(note, &said);
    for (const bool holds : {true, false, true}) {
        vell::set_accessible_state(button, EFL_ACCESS_STATE_TYPE_BUSY, holds);
        elm_object_focus_allow_set(button, holds);
        elm_theme_flush(nullptr);
        settle();
        EXPECT_EQ(says(EFL_ACCESS_STATE_TYPE_BUSY), holds);
        EXPECT_EQ(says(EFL_ACCESS_STATE_TYPE_ENABLED), holds);
        EXPECT_EQ(says(EFL_ACCESS_STATE_TYPE_SENSITIVE), holds);
        EXPECT_EQ(efl_access_action_do(button, 0) != EINA_FALSE, holds);
    }
    EXPECT_EQ(said, 7) << "three times busy or not, twice enabled or not, twice sensitive or not";
    efl_access_object_event_handler_del(listener);
}

TEST_F(ToolkitWidget, AppendedItemIsShownOnceAtTheEndOfTheTurnOrTheRender) {
    for (const bool render : {false, true}) {
        Evas_Object* const button = add_button("Go");
        EXPECT_FALSE(evas_object_visible_get(button));
        int shown = 0; // after the append
        evas_object_event_callback_add(button, EVAS_CALLBACK_SHOW, test::count, &shown);
        if (render)
            elm_vell_root_layout_render(root);
        else
            settle();
        EXPECT_TRUE(evas_object_visible_get(button));
        settle();
        EXPECT_EQ(shown, 1);
    }
    add_button("gone before it is shown");
    elm_vell_layout_clear(page);
    settle();
    EXPECT_THAT(screen.seen(), IsEmpty());
}

TEST_F(ToolkitWidget, TextIsShownAsItStands) {
    const char* const text = "<b>&amp; \\ 5 > 3";
    Evas_Object* const button = add_button(text);
    Evas_Object* const textbox = elm_vell_textbox_add(page);
    elm_vell_textbox_text_set(textbox, text);
    EXPECT_STREQ(elm_vell_button_text_get(button), text);
    EXPECT_STREQ(elm_object_text_get(button), text);
    EXPECT_STREQ(elm_object_text_get(textbox), text);
    elm_vell_button_text_set(button, nullptr);
    EXPECT_STREQ(elm_vell_button_text_get(button), "");
}

TEST_F(ToolkitWidget, ColorsThatAreNoneAreLogged) {
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

TEST_F(ToolkitWidget, SpinnerTakesTheMouseAndNumbersThatAnAssistiveTechnologySets) {
    Evas_Object* const spinner = elm_vell_spinner_add(page);
    elm_vell_layout_item_append(page, spinner, 200, 80);
    elm_spinner_min_max_set(elm_vell_spinner_native_get(spinner), 11, 13);
    elm_spinner_step_set(elm_vell_spinner_native_get(spinner), 1.0);
    Evas_Object* const other = add_button("other");
    std::string said; // each key that reaches the callbacks, and the number shown then
    const auto note = [](void* data, Evas*, Evas_Object* object, void* event) {
        const double value = elm_spinner_value_get(object);
        *static_cast<std::string*>(data) +=
            static_cast<Evas_Event_Key_Down*>(event)->key + std::to_string(std::lround(value)) + " ";
    };
    evas_object_event_callback_add(spinner, EVAS_CALLBACK_KEY_DOWN, note, &said);
    settle();
    elm_object_focus_set(other, EINA_TRUE);
    const auto click = [&](const std::string& clicked, int times) {
        for (const test::DrawnText& text : test::drawn_texts(screen.window()))
            for (int time = 0; text.text == clicked && time < times; ++time)
                screen.click(text.place);
        return std::lround(elm_spinner_value_get(spinner));
    };
    const std::string left_arrow = "\u2039";
    const std::string right_arrow = "\u203A";
    EXPECT_EQ(click(right_arrow, 3), 13);
    EXPECT_EQ(click(left_arrow, 3), 11);
    elm_config_mirrored_set(EINA_TRUE);
    EXPECT_EQ(click(left_arrow, 3), 13);
    for (const auto& [number, taken] : {std::pair(11.6, true), {13.1, false}, {std::nan(""), false}})
        EXPECT_EQ(efl_access_value_and_text_set(spinner, number, nullptr) != EINA_FALSE, taken) << number;
    EXPECT_EQ(elm_spinner_value_get(spinner), 12.0);
    settle();
    for (const test::DrawnText& text : test::drawn_texts(screen.window()))
        EXPECT_GT(test::contrast(text.place), 4.5) << text.text << " is dim, as a spent arrow is";
    click("12", 2);
    for (const char* const key : {"Right", "Return", "KP_Enter", "5", "Up", "Down", "Left"})
        screen.press(key);
    EXPECT_EQ(said, "Return12 Return12 Right11 Return11 KP_Enter11 511 Up12 Down11 Left12 ");
    screen.wheel(1);
    EXPECT_EQ(screen.focused(), "[11]");
    elm_object_disabled_set(spinner, EINA_TRUE);
    EXPECT_FALSE(efl_access_value_and_text_set(spinner, 12.0, nullptr));
    screen.wheel(-1);
    EXPECT_EQ(click(left_arrow, 1), 11);
    elm_object_disabled_set(spinner, EINA_FALSE);
    evas_object_show(elm_vell_popup_add(root));
    EXPECT_FALSE(efl_access_value_and_text_set(spinner, 12.0, nullptr)) << "behind a popup";
}

TEST_F(ToolkitWidget, UnitFits240TimesIntoTheWindowsWidthAnd135TimesIntoItsHeight) {
    EXPECT_EQ(elm_vell_unit_to_pixel(240.0), 1280);
    EXPECT_EQ(elm_vell_unit_to_pixel(10.0), 53); // 53.3
    for (const auto& [setting, width] : {std::pair("960x540", 960), std::pair("1280x540", 960),
                                         std::pair("480x720", 480), std::pair("wide", 1280)}) {
        const test::SettingsFolder settings(std::string("[screen]\nsize=") + setting + "\n");
        Evas_Object* const window = open_window();
        EXPECT_EQ(elm_vell_unit_to_pixel(240.0), width) << setting;
        evas_object_del(window);
    }
}

/** Calls each with each of the handles. */
template <class... Calls>
void call_with(std::initializer_list<Evas_Object*> handles, const Calls&... calls) {
    for (Evas_Object* const handle : handles)
        (calls(handle), ...);
}

/** A call of an operation on whatever handle. */
constexpr auto call = [](auto operation, auto... arguments) {
    return [=](Evas_Object* handle) { operation(handle, arguments...); };
};

TEST_F(ToolkitWidget, HandlesThatAreNullOrOfAnotherFamilyAreLeftAlone) {
    Evas_Object* const label = elm_vell_textbox_add(page);
    Evas_Object* const button = add_button("Go");
    Evas_Object* const foreign = elm_label_add(screen.window());
    elm_vell_textbox_text_set(label, "text");
    elm_vell_layout_item_append(page, label, 100, 20);
    settle();
    const auto before = screen.seen();
    const Eina_Rectangle area = geometry(button);
    call_with({nullptr, foreign}, call(elm_vell_object_size_min_set, 500, 500),
              call(elm_vell_object_resize_policy_set, 2, 7), call(elm_vell_object_weight_set, -1.0));
    call_with({nullptr, foreign, button}, call(elm_vell_textbox_text_set, "changed"),
              call(elm_vell_textbox_text_opacity_set, 0),
              call(elm_vell_textbox_style_property_set, "color", "#00000000"));
    call_with({nullptr, foreign, label}, call(elm_vell_bg_grid_show, 1), call(elm_vell_root_layout_set, 1),
              call(elm_vell_root_layout_render), call(elm_vell_layout_type_set, 2),
              call(elm_vell_layout_align_set, 9), call(elm_vell_layout_item_gap_set, 99),
              call(elm_vell_layout_padding_set, 9, 9, 9, 9), call(elm_vell_layout_bg_color_set, "CC_BG210"),
              call(elm_vell_layout_item_append, button, 9, 9), call(elm_vell_layout_clear),
              call(elm_vell_header_style_set, 1), call(elm_vell_header_uiplate_enable, true),
              call(elm_vell_header_text_set, "changed"), call(elm_vell_header_content_set, button),
              call(elm_vell_subheader_content_set, button), call(elm_vell_button_style_set, 0, 0),
              call(elm_vell_button_text_set, "changed"), call(elm_vell_button_text_get),
              call(elm_vell_button_zoom_set, 300), call(elm_vell_spinner_native_get),
              call(elm_vell_popup_style_set, 0), call(elm_vell_popup_title_set, "changed"),
              call(elm_vell_popup_message_set, "changed", 100),
              call(elm_vell_popup_content_set, button, 9, 9), call(elm_vell_popup_button_set, button, 0));
    for (const auto add : {elm_vell_bg_add, elm_vell_layout_add, elm_vell_header_add, elm_vell_textbox_add,
                           elm_vell_button_add, elm_vell_spinner_add, elm_vell_popup_add})
        EXPECT_EQ(add(nullptr), nullptr);
    elm_vell_layout_item_append(page, foreign, 9, 9);
    elm_vell_layout_item_append(page, nullptr, 9, 9);
    settle();
    EXPECT_EQ(screen.seen(), before);
    EXPECT_TRUE(test::is_inside(geometry(button), area) && test::is_inside(area, geometry(button)));
    EXPECT_FALSE(elm_vell_manager_init(nullptr));
}

} // namespace
