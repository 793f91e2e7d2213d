#include "support/toolkit_window.h"

#include <gmock/gmock.h>

namespace {

using test::focus_when_shown;
using test::settle;
using testing::ElementsAre;

/** A page with two buttons, a popup with a spinner and a popup with buttons. */
class ToolkitPopup : public test::ToolkitWindow {
protected:
    ToolkitPopup() {
        Evas_Object* const behind = add_button("behind");
        add_button("other");
        Evas_Object* const content = elm_vell_layout_add(root);
        elm_vell_popup_content_set(picker, content, 500, 200);
        Evas_Object* const spinner = elm_vell_spinner_add(content);
        elm_vell_layout_item_append(content, spinner, 200, 60);
        focus_when_shown(spinner);
        elm_vell_popup_title_set(question, "Question");
        elm_vell_popup_message_set(question, "Sure?", 300);
        add_popup_button("Yes");
        Evas_Object* const cancel = add_popup_button("Cancel");
        elm_vell_popup_button_set(question, cancel, 0); // changes nothing
        focus_when_shown(cancel);
        settle();
        elm_object_focus_set(behind, EINA_TRUE);
        settle();
    }
    /** In the next free place. */
    Evas_Object* add_popup_button(const char* text) const {
        Evas_Object* const button = elm_vell_button_add(question);
        elm_vell_button_text_set(button, text);
        elm_vell_popup_button_set(question, button, 0);
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

    Evas_Object* picker = elm_vell_popup_add(root);
    Evas_Object* question = elm_vell_popup_add(root);
};

TEST_F(ToolkitPopup, ShownAgainItTakesTheFocusAndGivesItBack) {
    for (const auto& [popup, focused] : {std::pair(picker, "[0]"), std::pair(question, "Cancel")}) {
        evas_object_show(popup);
        elm_popup_dismiss(popup);
        settle();
        evas_object_show(popup);
        elm_popup_dismiss(popup);
        show(popup);
        test::await([] { return false; }, std::chrono::milliseconds(300)); // longer than any effect
        EXPECT_EQ(screen.focused(), focused);
        dismiss(popup);
        EXPECT_EQ(screen.focused(), "behind");
        EXPECT_THAT(screen.seen(), ElementsAre("behind", "other"));
    }
}

TEST_F(ToolkitPopup, HasItsButtonsInARow) {
    add_popup_button("Maybe");
    Evas_Object* const first = elm_vell_button_add(question);
    elm_vell_button_text_set(first, "First");
    elm_vell_popup_button_set(question, first, 1);
    show(question);
    EXPECT_THAT(screen.seen(), testing::UnorderedElementsAre("behind", "other", "popup Question", "Sure?",
                                                             "First", "Yes", "Cancel", "Maybe"));
    int end = 0;
    for (const char* const text : {"First", "Yes", "Cancel", "Maybe"}) {
        const Eina_Rectangle place = test::geometry(screen.find(text));
        EXPECT_GT(place.w, 50) << text;
        EXPECT_GT(place.x, end) << text;
        end = place.x + place.w;
    }
}

TEST_F(ToolkitPopup, GoesOrOutlivesItsPageWhileItIsOpen) {
    show(picker);
    evas_object_del(picker);
    settle();
    screen.press("Tab");
    EXPECT_THAT(screen.focused(), testing::AnyOf("behind", "other"));
    show(question);
    elm_vell_layout_clear(page); // with what the focus would go back to
    settle();
    EXPECT_EQ(screen.focused(), "Cancel");
    dismiss(question);
    EXPECT_THAT(screen.seen(), ElementsAre());
}

} // namespace
