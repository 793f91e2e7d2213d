/** Data and pointers with the lifetime of a widget. */
#pragma once

#include <Elementary.h>

#include <memory>

namespace vell {

/** Creates a `T`, attached to `object` under `T::key` and deleted with the object. */
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

/** Returns the `T` attached to `object`, or null. */
template <class T>
T* attached(const Evas_Object* object) {
    return object == nullptr ? nullptr : static_cast<T*>(evas_object_data_get(object, T::key));
}

/** A pointer that becomes null when its widget is deleted. Not movable, because EFL stores the pointer's address. */
class WeakWidget {
public:
    WeakWidget() = default;
    explicit WeakWidget(Evas_Object* widget) { *this = widget; }
    ~WeakWidget() { *this = nullptr; }
    WeakWidget(const WeakWidget&) = delete;
    WeakWidget& operator=(const WeakWidget&) = delete;
    WeakWidget& operator=(Evas_Object* widget) {
        if (widget_ != nullptr)
            efl_wref_del(widget_, &widget_);
        widget_ = widget;
        if (widget_ != nullptr)
            efl_wref_add(widget_, &widget_);
        return *this;
    }
    // NOLINTNEXTLINE(google-explicit-constructor,hicpp-explicit-conversions)
    operator Evas_Object*() const { return widget_; }

private:
    Evas_Object* widget_ = nullptr;
};

/** Returns whether a widget is `ancestor` or a descendant of it. */
inline bool is_inside(const Evas_Object* widget, const Evas_Object* ancestor) {
    while (widget != nullptr && widget != ancestor)
        widget = elm_object_parent_widget_get(widget);
    return widget != nullptr;
}

} // namespace vell
