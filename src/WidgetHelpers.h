/**
 * The widgets of the pages in the application's fixed sizes, styles and colours.
 *
 * Each helper returns the new widget, and throws `inputDataIsNull` when the toolkit cannot make it; nothing
 * is appended or styled then. Sizes are layout units.
 */
#pragma once

#include "Log.h"

#include <Elementary.h>
#include <string_view>

/** What a helper throws. */
inline constexpr const char* inputDataIsNull = "Input data is Null!!";

/** A length in layout units, in whole pixels. */
int pixels(double units);

/** A line of text, appended to the layout. */
Evas_Object* createTextbox(Evas_Object* layout, const char* text);

/** A number picker, appended to the layout. */
Evas_Object* createSpinner(Evas_Object* layout);

/** Sets a number picker's limits, in steps of 1; returns the spinner inside, from which the value is read. */
Evas_Object* setupSpinner(Evas_Object* spinner, int min, int max);

/** A centred popup with a title, not shown yet. */
Evas_Object* createPopup(Evas_Object* parent, const char* title);

/** The layout inside a popup. */
Evas_Object* createPopupContent(Evas_Object* parent, Evas_Object* popup);

/** A button in the popup's next free place. */
Evas_Object* createPopupButton(Evas_Object* popup, const char* text);

/** A button, appended to the layout with a width and height in layout units. */
Evas_Object* createButton(Evas_Object* layout, const char* text, int width, int height);

/** A button's text; empty when it has none. */
std::string_view buttonText(const Evas_Object* button);

/** Runs one step of building a page; a text that a helper throws is logged for the step, which ends there. */
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

/** Whether everything a callback needs is there; else logs "Input data is Null!" for it. */
template <class... Pointers>
bool inputIsThere(const LogOrigin& origin, const Pointers*... pointers) {
    const bool all = ((pointers != nullptr) && ...);
    if (!all)
        LOG_ERROR_AT(origin, "Input data is Null!");
    return all;
}

/** "Shown" callback that gives the widget the focus; `origin` is the callback that it serves. */
void focusShownWidget(const LogOrigin& origin, Evas_Object* widget);
