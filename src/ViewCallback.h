/** Turns member functions of a view into widget callbacks. */
#pragma once

#include "ContentView.h"
#include "GuardedCallback.h"
#include "WidgetHelpers.h"

#include <Elementary.h>

/**
 * C callbacks that run a view's member function; their data is the view's `ContentView*`. If the data or the
 * event is null, they log "Input data is Null!" for the operation and do nothing.
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
/** A button's "pressed" callback, from a member function without parameters. */
#define PRESSED(View, operation) VIEW_CALLBACK(View, operation, pressed)
/** A widget's key-press callback, from a member function that takes the `Evas_Event_Key_Down`. */
#define KEY_DOWN(View, operation) VIEW_CALLBACK(View, operation, keyDown)
