/** A handle to a widget that the toolkit owns. */
#pragma once

#include <Elementary.h>

/** A pointer that becomes null when any code deletes its widget. */
class WidgetHandle {
public:
    WidgetHandle() = default;
    explicit WidgetHandle(Evas_Object* widget) { *this = widget; }
    ~WidgetHandle() { *this = nullptr; }
    WidgetHandle(const WidgetHandle&) = delete;
    WidgetHandle& operator=(const WidgetHandle& other) {
        if (this != &other)
            *this = other.object;
        return *this;
    }

    WidgetHandle& operator=(Evas_Object* widget) {
        if (object != nullptr)
            evas_object_event_callback_del_full(object, EVAS_CALLBACK_DEL, onDeleted, this);
        object = widget;
        if (object != nullptr)
            evas_object_event_callback_add(object, EVAS_CALLBACK_DEL, onDeleted, this);
        return *this;
    }

    /** Converts to the widget, or null. */
    operator Evas_Object*() const { return object; }

    /** Deletes the widget, if it still exists. */
    void deleteWidget() {
        if (object != nullptr)
            evas_object_del(object);
        *this = nullptr;
    }

private:
    static void onDeleted(void* data, Evas*, Evas_Object*, void*) {
        static_cast<WidgetHandle*>(data)->object = nullptr;
    }

    Evas_Object* object = nullptr;
};
