#include "press.h"

#include "common/object_data.h"

#include <Ecore_Evas.h>

#include <algorithm>
#include <utility>

namespace vell {
namespace {

constexpr double least_seconds = 0.12;

/** The latest press, until its pressed look ends. */
struct Press {
    WeakWidget widget; /**< null once the press is over or the widget is deleted */
    double shown = 0.0;
    bool in_progress = false;
    bool answered = false;
    Ecore_Timer* release = nullptr;
};

Press& latest_press() {
    static Press press;
    return press;
}

void emit(Evas_Object* widget, const char* signal) { elm_layout_signal_emit(widget, signal, "vell"); }

Eina_Bool release(void*) {
    Press& press = latest_press();
    press.release = nullptr;
    if (press.widget == nullptr)
        return ECORE_CALLBACK_CANCEL;
    emit(press.widget, "vell,state,released");
    if (!press.answered) {
        emit(press.widget, "vell,state,refused");
        nudge(press.widget);
    }
    press.widget = nullptr;
    return ECORE_CALLBACK_CANCEL;
}

} // namespace

void begin_press(Evas_Object* widget) {
    Press& press = latest_press();
    if (press.release != nullptr) {
        ecore_timer_del(press.release);
        release(nullptr);
    }
    press.widget = widget;
    press.in_progress = true;
    press.answered = false;
    emit(widget, "vell,state,pressed");
    draw_now(widget);
    press.shown = ecore_time_get();
}

void end_press() {
    Press& press = latest_press();
    if (!std::exchange(press.in_progress, false))
        return;
    const double rest = press.shown + least_seconds - ecore_time_get();
    press.release = ecore_timer_add(std::max(0.0, rest), release, nullptr);
}

Evas_Object* pressed_widget() {
    const Press& press = latest_press();
    return press.in_progress ? static_cast<Evas_Object*>(press.widget) : nullptr;
}

void answer_press() { latest_press().answered = true; }

void show_renewed(Evas_Object* widget) {
    answer_press();
    if (pressed_widget() != nullptr && evas_object_visible_get(widget) != EINA_FALSE)
        emit(widget, "vell,pulse");
}

void nudge(Evas_Object* widget) { emit(widget, "vell,nudge"); }

void draw_now(const Evas_Object* widget) {
    edje_object_message_signal_process(elm_layout_edje_get(widget));
    Evas* const canvas = evas_object_evas_get(widget);
    evas_smart_objects_calculate(canvas);
    ecore_evas_manual_render(ecore_evas_ecore_evas_get(canvas));
}

} // namespace vell
