/** A window with the widget toolkit, without the application's pages. */
#pragma once

#include "support/screen.h"

#include "WidgetHelpers.h"

namespace test {

class ToolkitWindow : public WindowTest {
protected:
    ToolkitWindow() {
        window = open_window();
        page = elm_vell_layout_add(window);
        elm_vell_root_layout_set(page, 1);
        evas_object_size_hint_weight_set(page, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
        elm_win_resize_object_add(window, page);
        evas_object_show(page);
        evas_object_show(window);
        EXPECT_TRUE(await([this] { return elm_win_focus_get(window) != EINA_FALSE; }));
    }
    ~ToolkitWindow() override { evas_object_del(window); }

    static Evas_Object* open_window() {
        Evas_Object* const opened = elm_win_util_standard_add("toolkit", "Toolkit");
        EXPECT_TRUE(elm_vell_manager_init(opened));
        return opened;
    }

    Evas_Object* add_button(const char* text) const { return createButton(page, text, 60, 10); }

    Evas_Object* page = nullptr; // stacks its items
};

} // namespace test
