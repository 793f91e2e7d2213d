/**
 * Velmora's first page, made with Elementary alone: the same widgets, at the same sizes, in Elementary's default style.
 *
 * A tab shows its start button; "Exit" opens a popup.
 */
#include <Elementary.h>

namespace {

// The sizes are those of Velmora's page on a 1280 x 720 screen.
Evas_Object* add_button(Evas_Object* box, const char* text, int width, int height, Evas_Smart_Cb clicked,
                        void* data) {
    Evas_Object* const button = elm_button_add(box);
    evas_object_size_hint_min_set(button, width, height);
    elm_object_text_set(button, text);
    evas_object_smart_callback_add(button, "clicked", clicked, data);
    elm_box_pack_end(box, button);
    evas_object_show(button);
    return button;
}

Evas_Object* add_box(Evas_Object* parent, bool horizontal) {
    Evas_Object* const box = elm_box_add(parent);
    elm_box_horizontal_set(box, horizontal ? EINA_TRUE : EINA_FALSE);
    evas_object_size_hint_weight_set(box, EVAS_HINT_EXPAND, EVAS_HINT_EXPAND);
    evas_object_size_hint_align_set(box, EVAS_HINT_FILL, EVAS_HINT_FILL);
    evas_object_show(box);
    return box;
}

void do_nothing(void* /*data*/, Evas_Object* /*button*/, void* /*event*/) {}

void show_start_page(void* data, Evas_Object* /*tab*/, void* /*event*/) {
    auto* const content = static_cast<Evas_Object*>(data);
    elm_box_clear(content);
    elm_object_focus_set(add_button(content, "Start TX Test", 533, 53, do_nothing, nullptr), EINA_TRUE);
}

void add_popup_button(Evas_Object* popup, const char* part, const char* text) {
    Evas_Object* const button = elm_button_add(popup);
    elm_object_text_set(button, text);
    elm_object_part_content_set(popup, part, button);
}

void open_popup(void* data, Evas_Object* /*exit*/, void* /*event*/) {
    Evas_Object* const popup = elm_popup_add(static_cast<Evas_Object*>(data));
    elm_object_part_text_set(popup, "title,text", "Exit App");
    elm_object_text_set(popup, "Do you want to exit ?");
    add_popup_button(popup, "button1", "Yes");
    add_popup_button(popup, "button2", "Cancel");
    evas_object_show(popup);
}

void show_first_page() {
    Evas_Object* const window = elm_win_util_standard_add("bare", "Bare");
    elm_win_autodel_set(window, EINA_TRUE);
    Evas_Object* const page = add_box(window, false);
    elm_win_resize_object_add(window, page);
    Evas_Object* const header = add_box(window, true);
    evas_object_size_hint_min_set(header, 1253, 139);
    elm_box_pack_end(page, header);
    Evas_Object* const title = elm_label_add(header);
    elm_object_text_set(title, "Velmora");
    elm_box_pack_end(header, title);
    evas_object_show(title);
    Evas_Object* const content = add_box(window, false);
    elm_box_pack_end(page, content);
    Evas_Object* const first_tab = add_button(header, "TX Test", 160, 37, show_start_page, content);
    add_button(header, "RX Test", 160, 37, show_start_page, content);
    add_button(header, "Exit", 85, 53, open_popup, window);
    elm_object_focus_set(first_tab, EINA_TRUE);
    elm_win_fullscreen_set(window, EINA_TRUE);
    int width = 0;
    int height = 0;
    elm_win_screen_size_get(window, nullptr, nullptr, &width, &height);
    evas_object_resize(window, width, height);
    evas_object_show(window);
}

} // namespace

EAPI_MAIN int elm_main(int /*argc*/, char** /*argv*/) {
    elm_policy_set(ELM_POLICY_QUIT, ELM_POLICY_QUIT_LAST_WINDOW_CLOSED);
    show_first_page();
    elm_run();
    return 0;
}
ELM_MAIN()
