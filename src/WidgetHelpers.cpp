#include "WidgetHelpers.h"

#include <platform/vell.h>

namespace {

Evas_Object* required(Evas_Object* widget) {
    if (widget == nullptr)
        throw inputDataIsNull; // NOLINT(misc-throw-by-value-catch-by-reference): the text is a constant
    return widget;
}

void append(Evas_Object* layout, Evas_Object* item, double width, double height) {
    elm_vell_layout_item_append(layout, item, pixels(width), pixels(height));
}

} // namespace

std::string_view buttonText(const Evas_Object* button) {
    const char* const text = elm_vell_button_text_get(button);
    return text == nullptr ? "" : text;
}

int pixels(double units) { return elm_vell_unit_to_pixel(units); }

Evas_Object* createTextbox(Evas_Object* layout, const char* text) {
    Evas_Object* const textbox = required(elm_vell_textbox_add(layout));
    elm_vell_textbox_text_set(textbox, text);
    elm_vell_textbox_text_opacity_set(textbox, 80);
    append(layout, textbox, 112.0, 10.0);
    elm_vell_object_size_min_set(textbox, pixels(40.0), pixels(10.0));
    elm_vell_object_resize_policy_set(textbox, 4, 3);
    elm_vell_textbox_style_property_set(textbox, "color", "#FFFFFFAF");
    return textbox;
}

Evas_Object* createSpinner(Evas_Object* layout) {
    Evas_Object* const spinner = required(elm_vell_spinner_add(layout));
    append(layout, spinner, 25.0, 10.0);
    return spinner;
}

Evas_Object* setupSpinner(Evas_Object* spinner, int min, int max) {
    Evas_Object* const native = required(elm_vell_spinner_native_get(spinner));
    elm_spinner_min_max_set(native, min, max);
    elm_spinner_step_set(native, 1.0);
    return native;
}

Evas_Object* createPopup(Evas_Object* parent, const char* title) {
    Evas_Object* const popup = required(elm_vell_popup_add(parent));
    elm_popup_orient_set(popup, ELM_POPUP_ORIENT_CENTER);
    elm_vell_popup_style_set(popup, 0);
    elm_vell_popup_title_set(popup, title);
    return popup;
}

Evas_Object* createPopupContent(Evas_Object* parent, Evas_Object* popup) {
    Evas_Object* const content = required(elm_vell_layout_add(parent));
    elm_vell_layout_type_set(content, 1);
    elm_vell_object_size_min_set(content, pixels(80.0), pixels(30.0));
    elm_vell_object_resize_policy_set(content, 4, 4);
    elm_vell_object_weight_set(content, 2.0);
    elm_vell_popup_content_set(popup, content, pixels(100.0), pixels(40.0));
    return content;
}

Evas_Object* createPopupButton(Evas_Object* popup, const char* text) {
    Evas_Object* const button = required(elm_vell_button_add(popup));
    elm_vell_button_style_set(button, 0, 0);
    elm_vell_button_text_set(button, text);
    elm_vell_popup_button_set(popup, button, 0);
    return button;
}

Evas_Object* createButton(Evas_Object* layout, const char* text, int width, int height) {
    Evas_Object* const button = required(elm_vell_button_add(layout));
    elm_vell_button_style_set(button, 0, 0);
    elm_vell_button_text_set(button, text);
    elm_vell_button_zoom_set(button, 130);
    elm_vell_object_size_min_set(button, pixels(12.0), pixels(10.0));
    elm_vell_layout_align_set(button, 2);
    elm_vell_object_weight_set(button, 1.0);
    append(layout, button, width, height);
    return button;
}

void focusShownWidget(const LogOrigin& origin, Evas_Object* widget) {
    if (inputIsThere(origin, widget))
        elm_object_focus_set(widget, EINA_TRUE);
}
