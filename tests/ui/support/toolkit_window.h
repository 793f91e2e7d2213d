/** A window with the widget toolkit, without the application. */
#pragma once

#include "support/log_capture.h"
#include "support/screen.h"

#include <gmock/gmock.h>
#include <platform/vell.h>

namespace test {

class ToolkitWindow : public testing::Test {
protected:
    ToolkitWindow() {
        elm_vell_root_layout_set(root, 1);
        elm_vell_layout_type_set(root, 3);
        elm_vell_layout_item_append(root, page, 1, 1);
        evas_object_size_hint_weight_set(root, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        elm_win_resize_object_add(screen.window(), root);
        elm_vell_root_layout_render(root);
        evas_object_show(root);
        evas_object_show(screen.window());
        EXPECT_TRUE(await([this] { return elm_win_focus_get(screen.window()) != EINA_FALSE; }));
    }
    ~ToolkitWindow() override {
        elm_config_mirrored_set(EINA_FALSE);
        evas_object_del(screen.window());
        settle();
        EXPECT_THAT(log.library_warnings(), testing::IsEmpty());
    }

    static Evas_Object* open_window() {
        start_elementary();
        Evas_Object* const window = elm_win_util_standard_add("toolkit", "Toolkit");
        EXPECT_TRUE(elm_vell_manager_init(window));
        return window;
    }

    /** Appends a widget, 60 x 10 units large, to the page. */
    Evas_Object* append(Evas_Object* widget) const {
        elm_vell_layout_item_append(page, widget, elm_vell_unit_to_pixel(60), elm_vell_unit_to_pixel(10));
        return widget;
    }
    Evas_Object* add_button(const char* text) const {
        Evas_Object* const button = append(elm_vell_button_add(page));
        elm_vell_button_text_set(button, text);
        return button;
    }

    LogCapture log; // hides the log of EFL and Xlib from the test's output
    const Screen screen{open_window()};
    Evas_Object* root = elm_vell_layout_add(screen.window());
    Evas_Object* page = elm_vell_layout_add(root); // stacks its items
};

} // namespace test
