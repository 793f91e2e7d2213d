#include "support/canvas.h"
#include "support/settings_folder.h"
#include "support/toolkit_window.h"

#include <array>
#include <cmath>
#include <gmock/gmock.h>

namespace {

using test::Counter;
using test::geometry;
using test::settle;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class ToolkitWidget : public test::ToolkitWindow {};

TEST_F(ToolkitWidget, ButtonIsPressedExactlyOnceForEachActivation) {
    Evas_Object* const button = add_button("Go");
    settle();
    Counter pressed;
    pressed.listen(button, "pressed");
    elm_object_focus_set(button, EINA_TRUE);
    for (const char* const key : {"Return", "KP_Enter"}) {
        pressed.count = 0;
        screen->press(key);
        EXPECT_EQ(pressed.count, 1) << key;
    }
    screen->click(button);
    EXPECT_EQ(pressed.count, 2);
    screen->press("a");
    EXPECT_EQ(pressed.count, 2);
}

TEST_F(ToolkitWidget, AppendedItemIsShownOnceAtTheEndOfTheTurnOrTheRender) {
    for (const bool render : {false, true}) {
        Evas_Object* const button = add_button("Go");
        EXPECT_FALSE(evas_object_visible_get(button));
        Counter shown;
        shown.listen(button, EVAS_CALLBACK_SHOW); // after the append
        if (render)
            elm_vell_root_layout_render(root);
        else
            settle();
        EXPECT_EQ(shown.count, 1);
        EXPECT_TRUE(evas_object_visible_get(button));
        settle();
        EXPECT_EQ(shown.count, 1);
    }
    add_button("gone before it is shown");
    elm_vell_layout_clear(page);
    settle();
    EXPECT_THAT(screen->seen(), ElementsAre());
}

TEST_F(ToolkitWidget, TextIsShownAsItStands) {
    const char* const text = "<b>&amp; \\ 5 > 3";
    Evas_Object* const button = add_button("");
    Evas_Object* const textbox = elm_vell_textbox_add(page);
    elm_vell_layout_item_append(page, textbox, 100, 20);
    elm_vell_button_text_set(button, text);
    elm_vell_textbox_text_set(textbox, text);
    EXPECT_STREQ(elm_vell_button_text_get(button), text);
    for (const Evas_Object* const widget : {button, textbox})
        EXPECT_STREQ(elm_object_text_get(widget), text);
    elm_vell_button_text_set(button, nullptr);
    EXPECT_STREQ(elm_vell_button_text_get(button), "");
}

TEST_F(ToolkitWidget, BarredButtonLetsTheFocusGoPastItAndCannotBePressed) {
    Evas_Object* const first = add_button("first");
    Evas_Object* const barred = add_button("barred");
    add_button("last");
    settle();
    elm_object_focus_set(first, EINA_TRUE);
    elm_object_focus_allow_set(barred, EINA_FALSE);
    screen->press("Down");
    EXPECT_EQ(screen->focused(), "last");
    test::Counter pressed;
    pressed.listen(barred, "pressed");
    screen->click(barred);
    EXPECT_EQ(pressed.count, 0);
    elm_object_focus_allow_set(barred, EINA_TRUE);
    screen->press("Up");
    EXPECT_EQ(screen->focused(), "barred");
    screen->click(barred);
    EXPECT_EQ(pressed.count, 1);
}

TEST_F(ToolkitWidget, ColorsThatAreNoneAreLogged) {
    Evas_Object* const textbox = elm_vell_textbox_add(page);
    for (const char* const good : {"#FFFFFFAF", "#a0B1c2", "CC_BG210"})
        elm_vell_layout_bg_color_set(page, good);
    EXPECT_THAT(log.text(), Not(HasSubstr("colour")));
    for (const std::string bad :
         {"", "#", "#12345", "#GG000000", "#123456789", "#-1234567", "NO_SUCH_CLASS"}) {
        elm_vell_layout_bg_color_set(page, bad.c_str());
        EXPECT_THAT(log.text(), HasSubstr("no such colour: " + bad + "\n"));
        elm_vell_textbox_style_property_set(textbox, "color", bad.c_str());
    }
    elm_vell_textbox_style_property_set(textbox, "shadow", "#FFFFFFFF");
    EXPECT_THAT(log.text(), HasSubstr("no such style property of a textbox: shadow"));
}

TEST_F(ToolkitWidget, SpinnerStepsWithinItsLimitsAndItsCallbacksSeeTheShownValue) {
    Evas_Object* const spinner = elm_vell_spinner_add(page);
    Evas_Object* const native = elm_vell_spinner_native_get(spinner);
    elm_vell_layout_item_append(page, spinner, 200, 80);
    Evas_Object* const other = add_button("other");
    elm_spinner_min_max_set(native, 11, 13);
    elm_spinner_step_set(native, 1.0);
    settle();
    elm_object_focus_set(spinner, EINA_TRUE);
    std::string keys;
    evas_object_event_callback_add(
        spinner, EVAS_CALLBACK_KEY_DOWN,
        [](void* data, Evas*, Evas_Object* object, void* event) {
            const double value = elm_spinner_value_get(elm_vell_spinner_native_get(object));
            *static_cast<std::string*>(data) +=
                static_cast<Evas_Event_Key_Down*>(event)->key + std::to_string(std::lround(value)) + " ";
        },
        &keys);
    for (const char* const key : {"Up", "Right", "Up", "Return", "KP_Enter", "5", "Down", "Left", "Left"})
        screen->press(key);
    EXPECT_EQ(keys, "Up12 Right13 Up13 Return13 KP_Enter13 513 Down12 Left11 Left11 ");
    elm_config_mirrored_set(EINA_TRUE);
    keys.clear();
    for (const char* const key : {"Left", "Up", "Right"})
        screen->press(key);
    EXPECT_EQ(keys, "Left12 Up13 Right12 ");
    EXPECT_EQ(screen->focused(), "[12]");

    // With the mouse, still mirrored; a press on the number is Return, whatever had the focus.
    elm_object_focus_set(other, EINA_TRUE);
    keys.clear();
    const auto value_after = [&](const std::string& clicked, int times = 1) {
        for (const auto& text : test::drawn_texts(screen->window()))
            if (text.text == clicked)
                for (int time = 0; time < times; ++time)
                    screen->click(text.place);
        return std::lround(elm_spinner_value_get(native));
    };
    EXPECT_EQ(value_after("\u2039"), 13); // the arrow to the left, where more is now
    EXPECT_EQ(value_after("\u2039"), 13);
    EXPECT_EQ(value_after("\u203A", 3), 11);
    screen->wheel(-1);
    EXPECT_EQ(value_after("12", 2), 12);
    EXPECT_EQ(keys, "Return12 Return12 ");
    EXPECT_EQ(screen->focused(), "[12]");
    screen->wheel(10);
    EXPECT_EQ(value_after("11"), 11);
    EXPECT_EQ(keys, "Return12 Return12 Return11 ");
    elm_object_disabled_set(spinner, EINA_TRUE);
    screen->wheel(-1);
    EXPECT_EQ(value_after("\u2039"), 11);
}

TEST_F(ToolkitWidget, UnitFits240TimesIntoTheWindowsWidthAnd135TimesIntoItsHeight) {
    EXPECT_EQ(elm_vell_unit_to_pixel(240.0), 1280);
    EXPECT_EQ(elm_vell_unit_to_pixel(10.0), 53); // 53.3
    EXPECT_EQ(elm_vell_unit_to_pixel(0.0), 0);
    for (const auto& [setting, width] : {std::pair("960x540", 960), std::pair("1280x540", 960),
                                         std::pair("480x720", 480), std::pair("wide", 1280)}) {
        const test::SettingsFolder settings(std::string("[screen]\nsize=") + setting + "\n");
        close_window();
        open_window();
        EXPECT_EQ(elm_vell_unit_to_pixel(240.0), width) << setting;
    }
}

TEST_F(ToolkitWidget, PageKeepsItsProportionsWhenTheWindowIsResized) {
    const auto place_button = [this] {
        Evas_Object* const button = add_button("Go");
        elm_vell_layout_align_set(page, 9);
        elm_vell_layout_padding_set(page, 0, elm_vell_unit_to_pixel(15.0), 0, 0);
        settle();
        return geometry(button);
    };
    const Eina_Rectangle expected = place_button();
    EXPECT_EQ(expected.x, 1280 - 80 - 320);
    // A smaller window of another shape, which the window manager then gives the whole screen.
    const test::SettingsFolder settings("[screen]\nsize=1000x540\n");
    close_window();
    open_window();
    ASSERT_TRUE(test::await([this] { return geometry(root).w == 1280; }));
    ASSERT_EQ(elm_vell_unit_to_pixel(240.0), 960);
    const Eina_Rectangle after = place_button();
    const std::array sides = {after.x - expected.x, after.y - expected.y, after.w - expected.w,
                              after.h - expected.h};
    EXPECT_THAT(sides, testing::Each(testing::AllOf(testing::Ge(-2), testing::Le(2))));
}

TEST_F(ToolkitWidget, MirroringAtRunTimeMovesThePageAndKeepsItsSizes) {
    elm_vell_layout_type_set(page, 2);
    elm_vell_layout_align_set(page, 1);
    Evas_Object* const first = add_button("first");
    Evas_Object* const second = add_button("second");
    elm_vell_object_size_min_set(second, 400, 90);
    settle();
    const std::array before = {geometry(first), geometry(second)};
    elm_config_mirrored_set(EINA_TRUE);
    settle();
    const std::array mirrored = {geometry(first), geometry(second)};
    for (std::size_t i = 0; i < before.size(); ++i) {
        EXPECT_EQ(mirrored.at(i).x, 1280 - before.at(i).x - before.at(i).w);
        EXPECT_EQ(mirrored.at(i).w, before.at(i).w);
        EXPECT_EQ(mirrored.at(i).h, before.at(i).h);
    }
    elm_config_mirrored_set(EINA_FALSE);
    settle();
    EXPECT_EQ(geometry(second).x, before.at(1).x);
    EXPECT_EQ(geometry(second).h, 90);
}

// Every call on a handle, with the family that it is for.
using Call = std::pair<const char*, void (*)(Evas_Object* handle, Evas_Object* item)>;
const std::vector<Call> calls = {
    {"any", [](auto* object, auto*) { elm_vell_object_size_min_set(object, 500, 500); }},
    {"any", [](auto* object, auto*) { elm_vell_object_resize_policy_set(object, 2, 7); }},
    {"any", [](auto* object, auto*) { elm_vell_object_weight_set(object, -1.0); }},
    {"bg", [](auto* object, auto*) { elm_vell_bg_grid_show(object, 1); }},
    {"layout", [](auto* object, auto*) { elm_vell_root_layout_set(object, 1); }},
    {"layout", [](auto* object, auto*) { elm_vell_root_layout_render(object); }},
    {"layout", [](auto* object, auto*) { elm_vell_layout_type_set(object, 2); }},
    {"layout", [](auto* object, auto*) { elm_vell_layout_align_set(object, 9); }},
    {"layout", [](auto* object, auto*) { elm_vell_layout_item_gap_set(object, 99); }},
    {"layout", [](auto* object, auto*) { elm_vell_layout_padding_set(object, 9, 9, 9, 9); }},
    {"layout", [](auto* object, auto*) { elm_vell_layout_bg_color_set(object, "CC_BG210"); }},
    {"layout", [](auto* object, auto* item) { elm_vell_layout_item_append(object, item, 9, 9); }},
    {"layout", [](auto* object, auto*) { elm_vell_layout_clear(object); }},
    {"header", [](auto* object, auto*) { elm_vell_header_style_set(object, 1); }},
    {"header", [](auto* object, auto*) { elm_vell_header_uiplate_enable(object, true); }},
    {"header", [](auto* object, auto*) { elm_vell_header_text_set(object, "changed"); }},
    {"header", [](auto* object, auto* item) { elm_vell_header_content_set(object, item); }},
    {"header", [](auto* object, auto* item) { elm_vell_subheader_content_set(object, item); }},
    {"textbox", [](auto* object, auto*) { elm_vell_textbox_text_set(object, "changed"); }},
    {"textbox", [](auto* object, auto*) { elm_vell_textbox_text_opacity_set(object, 0); }},
    {"textbox",
     [](auto* object, auto*) { elm_vell_textbox_style_property_set(object, "color", "#00000000"); }},
    {"button", [](auto* object, auto*) { elm_vell_button_style_set(object, 0, 0); }},
    {"button", [](auto* object, auto*) { elm_vell_button_text_set(object, "changed"); }},
    {"button", [](auto* object, auto*) { EXPECT_STREQ(elm_vell_button_text_get(object), ""); }},
    {"button", [](auto* object, auto*) { elm_vell_button_zoom_set(object, 300); }},
    {"spinner", [](auto* object, auto*) { EXPECT_EQ(elm_vell_spinner_native_get(object), nullptr); }},
    {"popup", [](auto* object, auto*) { elm_vell_popup_style_set(object, 0); }},
    {"popup", [](auto* object, auto*) { elm_vell_popup_title_set(object, "changed"); }},
    {"popup", [](auto* object, auto*) { elm_vell_popup_message_set(object, "changed", 100); }},
    {"popup", [](auto* object, auto* item) { elm_vell_popup_content_set(object, item, 9, 9); }},
    {"popup", [](auto* object, auto* item) { elm_vell_popup_button_set(object, item, 0); }},
};

TEST_F(ToolkitWidget, HandlesThatAreNullOrOfAnotherFamilyAreLeftAlone) {
    Evas_Object* const foreign = elm_label_add(screen->window());
    Evas_Object* const label = elm_vell_textbox_add(page);
    Evas_Object* const button = add_button("Go");
    elm_vell_textbox_text_set(label, "text");
    elm_vell_layout_item_append(page, label, 100, 20);
    settle();
    const auto before = screen->seen();
    const Eina_Rectangle area = geometry(button);
    for (std::size_t i = 0; i < calls.size(); ++i) {
        const auto& [family, call] = calls.at(i);
        SCOPED_TRACE(std::string(family) + " call " + std::to_string(i));
        const std::string_view kind = family;
        call(nullptr, button);
        call(nullptr, nullptr);
        call(foreign, button);
        if (kind != "any" && kind != "button")
            call(button, label);
        if (kind != "any" && kind != "textbox")
            call(label, button);
        for (const auto add :
             {elm_vell_bg_add, elm_vell_layout_add, elm_vell_header_add, elm_vell_textbox_add,
              elm_vell_button_add, elm_vell_spinner_add, elm_vell_popup_add})
            EXPECT_EQ(add(nullptr), nullptr);
    }
    elm_vell_layout_item_append(page, foreign, 9, 9);
    elm_vell_layout_item_append(page, nullptr, 9, 9);
    settle();
    EXPECT_EQ(screen->seen(), before);
    EXPECT_EQ(geometry(button).w, area.w);
    EXPECT_EQ(geometry(button).y, area.y);
    EXPECT_FALSE(elm_vell_manager_init(nullptr));
}

} // namespace
