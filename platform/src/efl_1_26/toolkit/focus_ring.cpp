#include "focus_ring.h"

#include "toolkit/arranging/placement.h"
#include "toolkit/widgets/widget.h"

#include <string>

namespace vell {
namespace {

/** Kept with the window. */
struct FocusRing {
    static constexpr const char* key = "vell/focus_ring";
    ~FocusRing();

    Evas_Object* window = nullptr;
    Evas_Object* drawn = nullptr;
    Area area;                     /**< where the ring stands */
    Evas_Object* widget = nullptr; /**< what it is around; null once the widget is gone */
};

/** A widget's area, or that of the part of it that its theme names. */
Area focus_area(const Evas_Object* widget) {
    Area area;
    evas_object_geometry_get(widget, &area.x, &area.y, &area.width, &area.height);
    const Evas_Object* const drawn = elm_layout_edje_get(widget);
    Area part;
    if (const char* const name = edje_object_data_get(drawn, "focus_part"))
        if (edje_object_part_geometry_get(drawn, name, &part.x, &part.y, &part.width, &part.height) !=
            EINA_FALSE)
            area = {area.x + part.x, area.y + part.y, part.width, part.height};
    return area;
}

Evas_Object* focused_widget(const Evas_Object* window) {
    Evas_Object* const widget = elm_object_focused_object_get(window);
    const Widget* const record = find(widget);
    const bool holds_focus =
        record != nullptr && (record->family == Family::button || record->family == Family::spinner);
    return holds_focus && evas_object_visible_get(widget) != EINA_FALSE ? widget : nullptr;
}

void go_to(FocusRing& ring, Evas_Object* widget) {
    point_weakly(ring.widget, widget);
    edje_object_signal_emit(ring.drawn, "vell,settle", "vell");
    edje_object_message_signal_process(ring.drawn);
    evas_object_show(ring.drawn);
}

/**
 * Elementary's own focus highlight glides across the window whenever a page or a popup comes or goes, and
 * surrounds the window instead of a spinner in a popup (measured). This ring looks anew before each frame,
 * when all that the frame shows is known.
 */
void before_frame(void* data, Evas* canvas, void*) {
    auto& ring = *static_cast<FocusRing*>(data);
    evas_smart_objects_calculate(canvas);
    Evas_Object* const widget = focused_widget(ring.window);
    if (widget == nullptr) {
        point_weakly(ring.widget, nullptr);
        evas_object_hide(ring.drawn);
        return;
    }
    if (widget != ring.widget)
        go_to(ring, widget);
    if (const Area area = focus_area(widget); area != ring.area) {
        ring.area = area;
        evas_object_geometry_set(ring.drawn, area.x, area.y, area.width, area.height);
    }
    edje_object_calc_force(ring.drawn);
}

FocusRing::~FocusRing() {
    evas_event_callback_del_full(evas_object_evas_get(window), EVAS_CALLBACK_RENDER_PRE, before_frame, this);
    point_weakly(widget, nullptr);
}

} // namespace

void ring_the_focus(Evas_Object* window) {
    elm_config_window_auto_focus_enable_set(EINA_FALSE); // or Elementary's highlight comes with the next key
    elm_win_focus_highlight_enabled_set(window, EINA_FALSE);
    if (attached<FocusRing>(window) != nullptr)
        return;
    auto& ring = attach<FocusRing>(window);
    Evas* const canvas = evas_object_evas_get(window);
    ring.window = window;
    ring.drawn = edje_object_add(canvas);
    constexpr const char* group = "vell/focus_ring";
    edje_object_file_set(ring.drawn, elm_theme_group_path_find(nullptr, group), group);
    evas_object_pass_events_set(ring.drawn, EINA_TRUE);
    evas_object_layer_set(ring.drawn, EVAS_LAYER_MAX);
    evas_event_callback_add(canvas, EVAS_CALLBACK_RENDER_PRE, before_frame, &ring);
}

void bump_ring(Evas_Object* window, const char* arrow) {
    if (const auto* const ring = attached<FocusRing>(window))
        edje_object_signal_emit(ring->drawn, (std::string("vell,bump,") + arrow).c_str(), "vell");
}

} // namespace vell
