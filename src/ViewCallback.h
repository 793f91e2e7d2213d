/** Operations of a test view as callbacks of its widgets. */
#pragma once

#include "ContentView.h"
#include "GuardedCallback.h"
#include "WidgetHelpers.h"

#include <Elementary.h>

/**
 * C callbacks that run the operation of a view, whose `ContentView*` is their data. When the data or the
 * event is missing, they log "Input data is Null!" for the operation and do nothing.
 */
template <auto operation, class Origin>
struct ViewCallback;

template <class View, class... Event, void (View::*operation)(Event...), class Origin>
struct ViewCallback<operation, Origin> {
    static void pressed(void* data, Evas_Object*, void*) {
        if (inputIsThere(Origin()(), data))
            (viewOf(data).*operation)();
    }

    static void keyDown(void* data, Evas*, Evas_Object*, void* event) {
        if (inputIsThere(Origin()(), data, event))
            (viewOf(data).*operation)(*static_cast<const Evas_Event_Key_Down*>(event));
    }

private:
    static View& viewOf(void* data) { return static_cast<View&>(*static_cast<ContentView*>(data)); }
};

#define VIEW_CALLBACK(View, operation, kind)                                                                 \
    GUARDED_FOR(operation, ViewCallback<&View::operation, ORIGIN_OF(operation)>::kind)
/** The "pressed" callback of a button: an operation without arguments. */
#define PRESSED(View, operation) VIEW_CALLBACK(View, operation, pressed)
/** The callback of each key press in a widget: an operation that gets the `Evas_Event_Key_Down`. */
#define KEY_DOWN(View, operation) VIEW_CALLBACK(View, operation, keyDown)
