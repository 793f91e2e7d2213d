#include "support/toolkit_window.h"

#include <algorithm>
#include <array>
#include <gmock/gmock.h>

namespace {

using test::focus_when_shown;
using test::settle;
using testing::ElementsAre;

/** A page with two buttons, a popup with a spinner and a popup with buttons. */
class ToolkitPopup : public test::ToolkitWindow {
protected:
    ToolkitPopup()
        : behind_(add_button("behind")), picker(add_popup("Picker")), question(add_popup("Question")) {
        add_button("other");
        Evas_Object* const content = elm_vell_layout_add(root);
        for (int time = 0; time < 2; ++time) // the second time changes nothing
            elm_vell_popup_content_set(picker, content, 500, 200);
        spinner = elm_vell_spinner_add(content);
        elm_vell_layout_item_append(content, spinner, 200, 60);
        focus_when_shown(spinner);
        elm_vell_popup_message_set(question, "Sure?", 300);
        add_popup_button("Yes", 0);
        Evas_Object* const cancel = add_popup_button("Cancel", 0);
        elm_vell_popup_button_set(question, cancel, 0); // nor here
        focus_when_shown(cancel);
        settle();
        elm_object_focus_set(behind_, EINA_TRUE);
        settle();
    }

    [[nodiscard]] Evas_Object* add_popup(const char* title) const {
        Evas_Object* const popup = elm_vell_popup_add(root);
        elm_vell_popup_title_set(popup, title);
        return popup;
    }
    Evas_Object* add_popup_button(const char* text, int slot) const {
        Evas_Object* const button = elm_vell_button_add(question);
        elm_vell_button_text_set(button, text);
        elm_vell_popup_button_set(question, button, slot);
        return button;
    }
    static void show(Evas_Object* popup) {
        evas_object_show(popup);
        settle();
    }
    static void dismiss(Evas_Object* popup) {
        elm_popup_dismiss(popup);
        settle();
    }
    [[nodiscard]] bool sees(const std::string& text) const { return screen->find(text) != nullptr; }

private:
    Evas_Object* behind_;

protected:
    Evas_Object* picker;
    Evas_Object* question;
    Evas_Object* spinner = nullptr;
};

TEST_F(ToolkitPopup, ShownAgainAndAgainItTakesTheFocusAndGivesItBack) {
    for (int time = 0; time < 3; ++time) {
        for (const auto& [popup, focused] : {std::pair(picker, "[0]"), std::pair(question, "Cancel")}) {
            evas_object_show(popup);
            EXPECT_EQ(screen->focused(), focused) << "at once, time " << time;
            settle();
            EXPECT_EQ(screen->focused(), focused) << time;
            dismiss(popup);
            EXPECT_EQ(screen->focused(), "behind") << time;
            EXPECT_FALSE(sees(focused));
        }
    }
}

TEST_F(ToolkitPopup, DismissedAndShownAtOnceItStays) {
    show(picker);
    elm_popup_dismiss(picker);
    show(picker);
    test::await([] { return false; }, std::chrono::milliseconds(300)); // longer than any effect
    EXPECT_TRUE(sees("popup Picker"));
    EXPECT_EQ(screen->focused(), "[0]");
    elm_popup_dismiss(picker);
    elm_popup_dismiss(picker);
    settle();
    EXPECT_FALSE(sees("popup Picker"));
    EXPECT_EQ(screen->focused(), "behind");
}

TEST_F(ToolkitPopup, FocusTakenBehindItGoesBackIntoIt) {
    show(question);
    screen->press("Left");
    EXPECT_EQ(screen->focused(), "Yes");
    // The page is built anew behind it, and its new button wants the focus.
    elm_vell_layout_clear(page);
    focus_when_shown(add_button("new"));
    settle();
    EXPECT_EQ(screen->focused(), "Yes");
    for (const char* const key : {"Up", "Down", "Left", "Right", "Tab"}) {
        screen->press(key);
        EXPECT_THAT(screen->focused(), testing::AnyOf("Yes", "Cancel")) << key;
    }
    dismiss(question);
    EXPECT_EQ(screen->focused(), "new");
}

TEST_F(ToolkitPopup, OneOverTheOtherTheyGiveTheFocusBackInTurn) {
    show(picker);
    show(question);
    EXPECT_EQ(screen->focused(), "Cancel");
    dismiss(question);
    EXPECT_EQ(screen->focused(), "[0]");
    screen->press("Up");
    EXPECT_EQ(screen->focused(), "[1]");
    dismiss(picker);
    EXPECT_EQ(screen->focused(), "behind");
}

TEST_F(ToolkitPopup, ClosedItTakesNoKeysInANewDirection) {
    test::Counter pressed;
    pressed.listen(screen->find("behind"), "pressed");
    show(question);
    dismiss(question);
    elm_config_mirrored_set(EINA_TRUE);
    settle();
    screen->press("Return");
    EXPECT_EQ(pressed.count, 1);
}

TEST_F(ToolkitPopup, NothingBehindItNorInItOnceClosedCanBeActivated) {
    std::array<test::Counter, 2> pressed;
    pressed[0].listen(screen->find("behind"), "pressed");
    show(question);
    Evas_Object* const cancel = screen->find("Cancel");
    pressed[1].listen(cancel, "pressed");
    // A screen reader's action reaches whatever the reader remembers.
    evas_object_smart_callback_call(screen->find("behind"), "clicked", nullptr);
    EXPECT_EQ(pressed[0].count, 0);
    EXPECT_EQ(screen->focused(), "Cancel");
    dismiss(question);
    evas_object_smart_callback_call(cancel, "clicked", nullptr);
    EXPECT_EQ(pressed[1].count, 0);
    EXPECT_EQ(screen->focused(), "behind");
}

TEST_F(ToolkitPopup, SlotZeroIsTheNextFreePlace) {
    add_popup_button("Maybe", 0);
    show(question);
    EXPECT_THAT(screen->seen(),
                ElementsAre("behind", "other", "popup Question", "Sure?", "Yes", "Cancel", "Maybe"));
    Evas_Object* const fourth = add_popup_button("Fourth", 0); // no place is left
    settle();
    EXPECT_FALSE(evas_object_visible_get(fourth));
    EXPECT_TRUE(sees("Yes") && sees("Cancel") && sees("Maybe"));
    for (const char* const text : {"Yes", "Cancel", "Maybe"})
        EXPECT_GT(test::geometry(screen->find(text)).w, 50) << text;
}

TEST_F(ToolkitPopup, DeletedWhileOpenItLeavesTheFocusToThePage) {
    show(picker);
    evas_object_del(picker);
    settle();
    screen->press("Tab");
    EXPECT_THAT(screen->focused(), testing::AnyOf("behind", "other"));
}

TEST_F(ToolkitPopup, OutlivesThePageBehindIt) {
    show(question);
    // What it would give the focus back to goes while it is open.
    elm_vell_layout_clear(page);
    settle();
    EXPECT_EQ(screen->focused(), "Cancel");
    dismiss(question);
    EXPECT_THAT(screen->seen(), ElementsAre());
}

} // namespace
