/**
 * Creates the pages' widgets in the application's fixed sizes, styles and colours.
 *
 * Each `create` function returns the new widget, or throws `inputDataIsNull` and appends nothing if the toolkit
 * cannot create the widget. Sizes are in layout units.
 */
#pragma once

#include "Log.h"

#include <Elementary.h>
#include <string_view>

/** The exception that helpers throw. */
inline constexpr const char* inputDataIsNull = "Input data is Null!!";

/** Converts layout units to pixels. */
int pixels(double units);

/** Appends a line of text to the layout. */
Evas_Object* createTextbox(Evas_Object* layout, const char* text);

/** Appends a number picker to the layout. */
Evas_Object* createSpinner(Evas_Object* layout);

/** Sets a number picker's limits and a step of 1; returns the inner spinner, which holds the value. */
Evas_Object* setupSpinner(Evas_Object* spinner, int min, int max);

/** Creates a centred, hidden popup with a title. */
Evas_Object* createPopup(Evas_Object* parent, const char* title);

/** Creates the layout inside a popup. */
Evas_Object* createPopupContent(Evas_Object* parent, Evas_Object* popup);

/** Adds a button to the popup, in the next free slot. */
Evas_Object* createPopupButton(Evas_Object* popup, const char* text);

/** Appends a button to the layout. */
Evas_Object* createButton(Evas_Object* layout, const char* text, int width, int height);

/** Returns a button's text; empty if it has none. */
std::string_view buttonText(const Evas_Object* button);

/** Runs one step of building a page; if a helper throws a text, logs it for the step and returns false. */
template <class Step>
bool runPageStep(const LogOrigin& origin, Step step) {
    try {
        step();
        return true;
    } catch (const char* text) {
        LOG_ERROR_AT(origin, "%s", text);
        return false;
    }
}

/** Returns whether all pointers are non-null; otherwise logs "Input data is Null!" for the callback. */
template <class... Pointers>
bool inputIsThere(const LogOrigin& origin, const Pointers*... pointers) {
    const bool all = ((pointers != nullptr) && ...);
    if (!all)
        LOG_ERROR_AT(origin, "Input data is Null!");
    return all;
}

/** Implements show callbacks that focus the widget; `origin` is the callback. */
void focusShownWidget(const LogOrigin& origin, Evas_Object* widget);
