#include "efl_1_26/toolkit/focus_moves.h"
#include "efl_1_26/toolkit/spinner_corrections.h"
#include "toolkit/layout_engine/items_box.h"
#include "toolkit/press/press.h"
#include "widget.h"

#include <platform/vell.h>

#include <cmath>
#include <string_view>

namespace {

constexpr const char* left_arrow = "\u2039";
constexpr const char* right_arrow = "\u203A";

std::string decimal(double value) { return std::to_string(std::lround(value)); }

/** Makes the theme show the limits, the value's position between them, and which arrows can step. */
void show_limits(void*, Evas_Object* spinner, void*) {
    double low = 0.0;
    double high = 0.0;
    elm_spinner_min_max_get(spinner, &low, &high);
    const double value = elm_spinner_value_get(spinner);
    elm_object_part_text_set(spinner, "vell.low", decimal(low).c_str());
    elm_object_part_text_set(spinner, "vell.high", decimal(high).c_str());
    Edje_Message_Float way{high > low ? (value - low) / (high - low) : 0.0};
    edje_object_message_send(elm_layout_edje_get(spinner), EDJE_MESSAGE_FLOAT, 1, &way);
    // Edje mirrors an arrow's position, not its glyph.
    const bool mirrored = elm_config_mirrored_get() != EINA_FALSE;
    elm_object_part_text_set(spinner, "vell.less", mirrored ? right_arrow : left_arrow);
    elm_object_part_text_set(spinner, "vell.more", mirrored ? left_arrow : right_arrow);
}

/** Steps the value for "Up", "Down", "Left" or "Right"; ignores any other key. */
void step(Evas_Object* spinner, const std::string& arrow) {
    const bool mirrored = elm_config_mirrored_get() != EINA_FALSE;
    const bool up = arrow == "Up" || arrow == (mirrored ? "Left" : "Right");
    const bool down = arrow == "Down" || arrow == (mirrored ? "Right" : "Left");
    if (up == down || elm_object_disabled_get(spinner) != EINA_FALSE)
        return;
    const double before = elm_spinner_value_get(spinner);
    elm_spinner_value_set(spinner, before + (up ? 1 : -1) * elm_spinner_step_get(spinner));
    if (elm_spinner_value_get(spinner) == before)
        vell::bump_ring(spinner, arrow);
    show_limits(nullptr, spinner, nullptr);
}

/**
 * Handles keys before Elementary, which would open a text entry on Return. Elementary ignores an event on hold, but the
 * key callbacks set on the spinner still receive it.
 */
void on_key(void*, Evas*, Evas_Object* spinner, void* event_information) {
    auto* const event = static_cast<Evas_Event_Key_Down*>(event_information);
    event->event_flags = static_cast<Evas_Event_Flags>(event->event_flags | EVAS_EVENT_FLAG_ON_HOLD);
    if (event->key == nullptr)
        return;
    const std::string_view key = event->key;
    if (key == "Return")
        vell::begin_press(spinner);
    step(spinner, std::string(key.starts_with("KP_") ? key.substr(3) : key));
}

/** Called after the key callbacks set on the spinner. */
void after_key(void*, Evas*, Evas_Object*, void*) { vell::end_press(); }

/** Handles a click on an arrow; Elementary handles the mouse wheel. */
void on_arrow(void*, Evas_Object* spinner, const char*, const char* arrow) {
    const bool mirrored = elm_config_mirrored_get() != EINA_FALSE;
    step(spinner, (std::string_view(arrow) == "less") != mirrored ? "Left" : "Right");
}

/** Sends Return to the key callbacks set on the spinner, as OK on the remote control does. */
void on_number(void*, Evas_Object* spinner, const char*, const char*) {
    elm_object_focus_set(spinner, EINA_TRUE);
    if (elm_object_focus_get(spinner) == EINA_FALSE)
        return;
    Evas* const canvas = evas_object_evas_get(spinner);
    const auto now = static_cast<unsigned>(ecore_loop_time_get() * 1000.0);
    evas_event_feed_key_down(canvas, "Return", "Return", "\n", nullptr, now, nullptr);
    evas_event_feed_key_up(canvas, "Return", "Return", "\n", nullptr, now, nullptr);
}

void on_spinner_show(void*, Evas*, Evas_Object* spinner, void*) { show_limits(nullptr, spinner, nullptr); }

} // namespace

Evas_Object* elm_vell_spinner_add(Evas_Object* parent) {
    Evas_Object* const spinner = parent == nullptr ? nullptr : elm_spinner_add(parent);
    if (vell::adopt(spinner, vell::Family::spinner) == nullptr)
        return nullptr;
    vell::attached<vell::Item>(spinner)->request.content_is_minimum = true; // legible at three metres
    elm_spinner_editable_set(spinner, EINA_FALSE);
    elm_spinner_wrap_set(spinner, EINA_FALSE);
    elm_spinner_label_format_set(spinner, "%.0f");
    vell::correct_spinner(spinner);
    elm_object_focus_allow_set(spinner, EINA_TRUE);
    evas_object_event_callback_priority_add(spinner, EVAS_CALLBACK_KEY_DOWN, EVAS_CALLBACK_PRIORITY_BEFORE,
                                            on_key, nullptr);
    evas_object_event_callback_priority_add(spinner, EVAS_CALLBACK_KEY_DOWN, EVAS_CALLBACK_PRIORITY_AFTER,
                                            after_key, nullptr);
    elm_layout_signal_callback_add(spinner, "mouse,clicked,1", "less", on_arrow, nullptr);
    elm_layout_signal_callback_add(spinner, "mouse,clicked,1", "more", on_arrow, nullptr);
    elm_layout_signal_callback_add(spinner, "mouse,clicked,1", "number", on_number, nullptr);
    evas_object_event_callback_add(spinner, EVAS_CALLBACK_SHOW, on_spinner_show, nullptr);
    evas_object_smart_callback_add(spinner, "changed", show_limits, nullptr);
    evas_object_smart_callback_add(spinner, "theme,changed", show_limits,
                                   nullptr); // also called when the mirroring changes
    return spinner;
}

Evas_Object* elm_vell_spinner_native_get(Evas_Object* spinner) {
    return vell::is_a(vell::Family::spinner, spinner) ? spinner : nullptr;
}
