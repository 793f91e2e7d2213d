/**
 * The television's widget toolkit.
 *
 * Every handle is an Elementary object in the toolkit's theme, so plain Elementary calls work on it. Sizes
 * are pixels, made from layout units with `elm_vell_unit_to_pixel`; a unit is 1/240 of the window's width or
 * 1/135 of its height, whichever is smaller, and the page stands in the window's middle. A call on a null
 * handle, or on a handle that another family made, does nothing.
 *
 * An item appended to a layout is shown when the layout is next rendered: at `elm_vell_root_layout_render`,
 * later at the end of the current turn of the main loop. A show callback connected after the append therefore
 * is called.
 */
#pragma once

#include <Elementary.h>

/* Manager
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Readies the toolkit for a window: its theme, its unit and the window's size.
 *
 * The window gets the whole screen, or the size in the setting "screen/size" (for example "1280x720").
 *
 * @param window the application's window.
 * @return true when the theme was loaded.
 */
bool elm_vell_manager_init(Evas_Object* window);

/** Releases what `elm_vell_manager_init` took. Calls after the first do nothing. */
void elm_vell_manager_fini();

/** Pixels of a length in layout units, rounded to the nearest. */
int elm_vell_unit_to_pixel(double units);

/* Any widget
 * ---------------------------------------------------------------------------------------------------- */

/** Sets the least size in pixels that a layout gives the widget. */
void elm_vell_object_size_min_set(Evas_Object* object, int width, int height);

/**
 * Sets how a layout sizes the widget in each direction.
 *
 * @param horizontal,vertical 1 keeps the size it was appended with, 3 fits its content, 4 fills the parent.
 */
void elm_vell_object_resize_policy_set(Evas_Object* object, int horizontal, int vertical);

/** Sets the widget's share of the space that items filling the parent divide among themselves; 1.0 at first. */
void elm_vell_object_weight_set(Evas_Object* object, double weight);

/* Background
 * ---------------------------------------------------------------------------------------------------- */

/** Makes the background of a window; null when it cannot be made. */
Evas_Object* elm_vell_bg_add(Evas_Object* window);

/** Hides (0) the background's grid of layout units, a designer's aid of the television's; there is none to show here. */
void elm_vell_bg_grid_show(Evas_Object* background, int shown);

/* Layout
 * -------------------------------------------------------------------------------------------------------- */

/** Makes a layout; null when it cannot be made. */
Evas_Object* elm_vell_layout_add(Evas_Object* parent);

/** Marks (1) the layout as the root of its window: its items share 240 x 135 units in its middle. */
void elm_vell_root_layout_set(Evas_Object* layout, int root);

/** Lays the root layout and all below it out at once and shows what was appended. */
void elm_vell_root_layout_render(Evas_Object* layout);

/** Sets how items are placed: 1 stacks downwards, 2 runs in reading order, 3 is filled by its one child. */
void elm_vell_layout_type_set(Evas_Object* layout, int type);

/**
 * Sets where in its free space a layout puts its items: a 3 x 3 grid in reading order, 1 top-left to 9
 * bottom-right. Mirrored layouts exchange left and right. A widget without items keeps its place.
 */
void elm_vell_layout_align_set(Evas_Object* object, int align);

/** Sets the space in pixels between two items. */
void elm_vell_layout_item_gap_set(Evas_Object* layout, int gap);

/** Sets the space in pixels between the layout's edges and its items. */
void elm_vell_layout_padding_set(Evas_Object* layout, int left, int right, int top, int bottom);

/** Sets the layout's background, "#RRGGBBAA" or a colour class of the theme such as "CC_BG210". */
void elm_vell_layout_bg_color_set(Evas_Object* layout, const char* color);

/** Appends a widget to a layout with a size in pixels. */
void elm_vell_layout_item_append(Evas_Object* layout, Evas_Object* item, int width, int height);

/** Deletes every item of a layout. */
void elm_vell_layout_clear(Evas_Object* layout);

/* Header
 * -------------------------------------------------------------------------------------------------------- */

/** Makes a page header; null when it cannot be made. */
Evas_Object* elm_vell_header_add(Evas_Object* parent);

/** Sets the header's style; 1 is the one of a page with a row of tabs. */
void elm_vell_header_style_set(Evas_Object* header, int style);

/** Draws (true) or leaves out (false) the plate behind the header. */
void elm_vell_header_uiplate_enable(Evas_Object* header, bool enabled);

/** Sets the header's title. */
void elm_vell_header_text_set(Evas_Object* header, const char* text);

/** Puts a layout at the end of the header's row; it keeps the size of its geometry. */
void elm_vell_header_content_set(Evas_Object* header, Evas_Object* content);

/** Puts a layout of tab buttons in the header's middle; the tab pressed last is marked as chosen. */
void elm_vell_subheader_content_set(Evas_Object* header, Evas_Object* content);

/* Textbox
 * ------------------------------------------------------------------------------------------------------- */

/** Makes a textbox of one line, which ends in an ellipsis when it is too long; null when it cannot be made. */
Evas_Object* elm_vell_textbox_add(Evas_Object* parent);

/** Sets the text; it is shown as it stands, without markup. */
void elm_vell_textbox_text_set(Evas_Object* textbox, const char* text);

/** Sets the text's opacity, 0 to 100 percent. */
void elm_vell_textbox_text_opacity_set(Evas_Object* textbox, int percent);

/** Sets a style property of the text; "color" takes "#RRGGBBAA". Others are logged and left out. */
void elm_vell_textbox_style_property_set(Evas_Object* textbox, const char* property, const char* value);

/* Button
 * -------------------------------------------------------------------------------------------------------- */

/**
 * Makes a button; null when it cannot be made.
 *
 * Emits "pressed" exactly once for each activation, by Return, KP_Enter, the mouse or an accessibility action.
 */
Evas_Object* elm_vell_button_add(Evas_Object* parent);

/** Sets the button's style and sub-style; (0, 0) is the plain text button. */
void elm_vell_button_style_set(Evas_Object* button, int style, int substyle);

/** Sets the button's text; it is shown as it stands, without markup. */
void elm_vell_button_text_set(Evas_Object* button, const char* text);

/** The text last set, owned by the button; the empty string when none was set or the button is null. */
const char* elm_vell_button_text_get(const Evas_Object* button);

/** Sets the size of the button's text in percent of the theme's small text; 100 at first. */
void elm_vell_button_zoom_set(Evas_Object* button, int percent);

/* Spinner
 * ------------------------------------------------------------------------------------------------------- */

/**
 * Makes a number picker; null when it cannot be made.
 *
 * It holds the focus itself. Up and Right step the value up, Down and Left down (Left and Right change places
 * when mirrored), and it stops at the limits. Every other key changes nothing. Key-down callbacks set on it
 * see every key press, with the value that the screen shows. With the mouse, its arrows and the wheel step,
 * and a press on the number is Return.
 */
Evas_Object* elm_vell_spinner_add(Evas_Object* parent);

/** The Elementary spinner inside, for its limits, step and value; null when there is none. */
Evas_Object* elm_vell_spinner_native_get(Evas_Object* spinner);

/* Popup
 * ---------------------------------------------------------------------------------------------------------
 */

/**
 * Makes a popup over the whole window; null when it cannot be made.
 *
 * Showing it shows its content anew, so show callbacks of its content decide its focus every time; hiding it
 * gives the focus back to the widget that held it.
 */
Evas_Object* elm_vell_popup_add(Evas_Object* parent);

/** Sets the popup's style; 0 is the plain one with a title. */
void elm_vell_popup_style_set(Evas_Object* popup, int style);

/** Sets the popup's title. */
void elm_vell_popup_title_set(Evas_Object* popup, const char* text);

/** Sets the popup's message, shown as it stands, and the width in pixels at which it wraps. */
void elm_vell_popup_message_set(Evas_Object* popup, const char* text, int width);

/** Sets a layout as the popup's content, with its size in pixels. */
void elm_vell_popup_content_set(Evas_Object* popup, Evas_Object* content, int width, int height);

/** Puts a button into a place of the popup's button row; slot 0 is the next free one. */
void elm_vell_popup_button_set(Evas_Object* popup, Evas_Object* button, int slot);
