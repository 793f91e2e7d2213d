/** A window with the widget toolkit, without the application. */
#pragma once

#include "support/screen.h"

namespace test {

class ToolkitWindow : public WindowTest {
protected:
    ToolkitWindow() {
        window = open_window();
        root = elm_vell_layout_add(window);
        page = elm_vell_layout_add(root);
        elm_vell_root_layout_set(root, 1);
        elm_vell_layout_type_set(root, 3);
        elm_vell_layout_item_append(root, page, 1, 1);
        evas_object_size_hint_weight_set(root, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        elm_win_resize_object_add(window, root);
        evas_object_show(root);
        evas_object_show(window);
        EXPECT_TRUE(await([this] { return elm_win_focus_get(window) != EINA_FALSE; }));
    }
    ~ToolkitWindow() override { evas_object_del(window); }

    static Evas_Object* open_window() {
        Evas_Object* const opened = elm_win_util_standard_add("toolkit", "Toolkit");
        EXPECT_TRUE(elm_vell_manager_init(opened));
        return opened;
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

    Evas_Object* root = nullptr;
    Evas_Object* page = nullptr; // stacks its items
};

} // namespace test
