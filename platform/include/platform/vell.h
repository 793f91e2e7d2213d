/**
 * The television's widget toolkit.
 *
 * Every handle is an Elementary object in the toolkit's theme, so plain Elementary calls work on it. Sizes are in
 * pixels; convert layout units with `elm_vell_unit_to_pixel`. A unit is 1/240 of the window's width or 1/135 of its
 * height, whichever is smaller, and the page is centred in the window. A call has no effect on a null handle or on a
 * widget of the wrong type.
 *
 * An item appended to a layout stays hidden until `elm_vell_root_layout_render` is called, or at the latest until the
 * end of the current main-loop iteration. Show callbacks may therefore be connected after the append.
 */
#pragma once

#include <Elementary.h>

/* Manager
 * ------------------------------------------------------------------------------------------------------ */

/**
 * Initialises the toolkit for a window: loads the theme and sets the layout unit and the window's size.
 *
 * The window is full-screen, or has the size in the setting "screen/size" (for example "1280x720").
 *
 * @param window the application's window.
 * @return true if the theme was loaded.
 */
bool elm_vell_manager_init(Evas_Object* window);

/** Releases the toolkit. Has no effect on a Linux PC, where all resources are freed with the window. */
void elm_vell_manager_fini();

/** Converts layout units to pixels, rounded to the nearest. */
int elm_vell_unit_to_pixel(double units);

/* Any widget
 * ---------------------------------------------------------------------------------------------------- */

/** Sets the widget's minimum size in pixels. */
void elm_vell_object_size_min_set(Evas_Object* object, int width, int height);

/**
 * Sets how a layout sizes the widget in each direction.
 *
 * @param horizontal,vertical 1 keeps the size given to append, 3 fits the content, 4 fills the parent.
 */
void elm_vell_object_resize_policy_set(Evas_Object* object, int horizontal, int vertical);

/** Sets the widget's share of the space divided among items that fill the parent; initially 1.0. */
void elm_vell_object_weight_set(Evas_Object* object, double weight);

/* Background
 * ---------------------------------------------------------------------------------------------------- */

/** Creates the background of a window; returns null on failure. */
Evas_Object* elm_vell_bg_add(Evas_Object* window);

/** Hides (0) the television's layout grid, an aid for designers. This implementation has no grid to show. */
void elm_vell_bg_grid_show(Evas_Object* background, int shown);

/* Layout
 * -------------------------------------------------------------------------------------------------------- */

/** Creates a layout; returns null on failure. */
Evas_Object* elm_vell_layout_add(Evas_Object* parent);

/** Sets (1) the layout as the root of its window; the root's items share the 240 x 135 units of the page. */
void elm_vell_root_layout_set(Evas_Object* layout, int root);

/** Lays out the root layout and its descendants at once, and shows appended items. */
void elm_vell_root_layout_render(Evas_Object* layout);

/** Sets how items are placed: 1 stacked downwards, 2 in reading order, 3 a single child that fills the layout. */
void elm_vell_layout_type_set(Evas_Object* layout, int type);

/**
 * Sets the alignment of a layout's items in its free space: a 3 x 3 grid in reading order, from 1 (top left) to 9
 * (bottom right). Mirrored layouts swap left and right. No effect on a widget without items.
 */
void elm_vell_layout_align_set(Evas_Object* object, int align);

/** Sets the space in pixels between two items. */
void elm_vell_layout_item_gap_set(Evas_Object* layout, int gap);

/** Sets the space in pixels between the layout's edges and its items. */
void elm_vell_layout_padding_set(Evas_Object* layout, int left, int right, int top, int bottom);

/** Sets the layout's background colour: "#RRGGBBAA" or a colour class of the theme, such as "CC_BG210". */
void elm_vell_layout_bg_color_set(Evas_Object* layout, const char* color);

/** Appends a widget to a layout with a size in pixels. */
void elm_vell_layout_item_append(Evas_Object* layout, Evas_Object* widget, int width, int height);

/** Deletes all items of a layout. */
void elm_vell_layout_clear(Evas_Object* layout);

/* Header
 * -------------------------------------------------------------------------------------------------------- */

/** Creates a page header; returns null on failure. */
Evas_Object* elm_vell_header_add(Evas_Object* parent);

/** Sets the header's style; 1 is for a page with a row of tabs. */
void elm_vell_header_style_set(Evas_Object* header, int style);

/** Shows (true) or hides (false) the header's background. */
void elm_vell_header_uiplate_enable(Evas_Object* header, bool enabled);

/** Sets the header's title. */
void elm_vell_header_text_set(Evas_Object* header, const char* text);

/** Sets a layout, in its current size, as the content at the end of the header's row. */
void elm_vell_header_content_set(Evas_Object* header, Evas_Object* content);

/** Sets a layout of tab buttons as the content in the header's middle; marks the tab pressed last as selected. */
void elm_vell_subheader_content_set(Evas_Object* header, Evas_Object* content);

/* Textbox
 * ------------------------------------------------------------------------------------------------------- */

/** Creates a one-line textbox, which truncates long text with an ellipsis; returns null on failure. */
Evas_Object* elm_vell_textbox_add(Evas_Object* parent);

/** Sets the text, which is displayed literally, without markup. */
void elm_vell_textbox_text_set(Evas_Object* textbox, const char* text);

/** Sets the text's opacity, 0 to 100 percent. */
void elm_vell_textbox_text_opacity_set(Evas_Object* textbox, int percent);

/** Sets a style property of the text; "color" takes "#RRGGBBAA". Unknown properties are logged and ignored. */
void elm_vell_textbox_style_property_set(Evas_Object* textbox, const char* property, const char* value);

/* Button
 * -------------------------------------------------------------------------------------------------------- */

/**
 * Creates a button; returns null on failure.
 *
 * Emits "pressed" exactly once per activation by Return, KP_Enter, the mouse or an accessibility action.
 */
Evas_Object* elm_vell_button_add(Evas_Object* parent);

/** Sets the button's style and sub-style; (0, 0) is the plain text button. */
void elm_vell_button_style_set(Evas_Object* button, int style, int substyle);

/** Sets the button's text, which is displayed literally, without markup. */
void elm_vell_button_text_set(Evas_Object* button, const char* text);

/** Returns the text, owned by the button; empty if none was set or the button is null. */
const char* elm_vell_button_text_get(const Evas_Object* button);

/** Sets the button's text size in percent of the theme's size for buttons; initially 100. */
void elm_vell_button_zoom_set(Evas_Object* button, int percent);

/* Spinner
 * ------------------------------------------------------------------------------------------------------- */

/**
 * Creates a number picker; returns null on failure.
 *
 * The picker itself holds the focus. Up and Right increase the value, Down and Left decrease it (Left and Right are
 * swapped when mirrored); the value stops at the limits. Other keys do not change the value. Key-down callbacks on the
 * picker receive every key press, after any change of the value. The mouse wheel and clicks on the arrows step the
 * value; a click on the number acts as Return.
 */
Evas_Object* elm_vell_spinner_add(Evas_Object* parent);

/** Returns the inner Elementary spinner, for its limits, step and value, or null. */
Evas_Object* elm_vell_spinner_native_get(Evas_Object* spinner);

/* Popup
 * ---------------------------------------------------------------------------------------------------------
 */

/**
 * Creates a modal popup for the window; returns null on failure.
 *
 * Each time the popup is shown, its content is shown again, so show callbacks can set the focus. When the popup is
 * hidden, the focus returns to the widget that had it before.
 */
Evas_Object* elm_vell_popup_add(Evas_Object* parent);

/** Sets the popup's style; 0 is plain, with a title. */
void elm_vell_popup_style_set(Evas_Object* popup, int style);

/** Sets the popup's title. */
void elm_vell_popup_title_set(Evas_Object* popup, const char* text);

/** Sets the popup's message, displayed literally, and its wrap width in pixels. */
void elm_vell_popup_message_set(Evas_Object* popup, const char* text, int width);

/** Sets a layout as the popup's content, with its size in pixels. */
void elm_vell_popup_content_set(Evas_Object* popup, Evas_Object* content, int width, int height);

/** Adds a button to the popup's button row; slot 0 is the next free one. */
void elm_vell_popup_button_set(Evas_Object* popup, Evas_Object* button, int slot);
