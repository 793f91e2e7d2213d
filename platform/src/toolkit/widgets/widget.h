/** What the toolkit keeps with each of its widgets. */
#pragma once

#include "toolkit/arranging/placement.h"

#include <Elementary.h>

#include <memory>
#include <string>

namespace vell {

enum class Family { background, layout, header, textbox, button, spinner, message, popup };

/** The toolkit's record of one widget; sizes are pixels at the unit that held when they were given. */
struct Widget {
    Family family = Family::layout;
    Evas_Object* object = nullptr;
    ItemRequest request;           /**< how its holder sizes it; `content` is measured when it is laid out */
    Evas_Object* holder = nullptr; /**< the box that places it */
};

/** Makes `object` a widget of the toolkit; null stays null. Returns `object`. */
Evas_Object* adopt(Evas_Object* object, Family family);

/** The record of a widget, or null when `object` is null or not the toolkit's. */
Widget* find(const Evas_Object* object);

/** The record of a widget of one family, or null. */
Widget* find(const Evas_Object* object, Family family);

/** Text as Elementary's markup, in which it is shown as it stands; null counts as empty. */
std::string markup(const char* text);

/** Points `place`, which stays where it is, to `widget`, and to nothing once the widget is gone. */
void point_weakly(Evas_Object*& place, Evas_Object* widget);

/** Whether a widget is `ancestor` or in it. */
bool is_inside(const Evas_Object* widget, const Evas_Object* ancestor);

/** State of type `T` kept with `object` under `T::key` and deleted with it. */
template <class T>
T& attach(Evas_Object* object) {
    T* const state = std::make_unique<T>().release();
    evas_object_data_set(object, T::key, state);
    evas_object_event_callback_add(
        object, EVAS_CALLBACK_FREE,
        [](void* data, Evas*, Evas_Object*, void*) { std::default_delete<T>()(static_cast<T*>(data)); },
        state);
    return *state;
}

/** The state of type `T` kept with `object`, or null. */
template <class T>
T* attached(const Evas_Object* object) {
    return object == nullptr ? nullptr : static_cast<T*>(evas_object_data_get(object, T::key));
}

} // namespace vell
