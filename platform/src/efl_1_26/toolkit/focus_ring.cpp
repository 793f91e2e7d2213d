#include "focus_ring.h"

#include "toolkit/arranging/placement.h"
#include "toolkit/widgets/widget.h"

#include <cmath>
#include <string_view>
#include <utility>

namespace vell {
namespace {

constexpr double glide_seconds = 0.15;

/** Kept with the window. */
struct FocusRing {
    static constexpr const char* key = "vell/focus_ring";
    ~FocusRing();

    Evas_Object* window = nullptr;
    Evas_Object* drawn = nullptr;
    Area from; /**< where the glide began */
    Area area; /**< where the ring stands or glides to */
    Ecore_Animator* glide = nullptr;
    // Null once the widget is gone:
    Evas_Object* widget = nullptr;   /**< what the ring is around */
    Evas_Object* moved_to = nullptr; /**< what a key gave the focus since the last frame */
};

Area area_of(const Evas_Object* object) {
    Area area;
    evas_object_geometry_get(object, &area.x, &area.y, &area.width, &area.height);
    return area;
}

/** A widget's area, or that of the part of it that its theme names. */
Area focus_area(const Evas_Object* widget) {
    Area area = area_of(widget);
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

void put(const FocusRing& ring, const Area& area) {
    evas_object_geometry_set(ring.drawn, area.x, area.y, area.width, area.height);
}

void end_glide(FocusRing& ring) {
    if (ring.glide != nullptr)
        ecore_animator_del(std::exchange(ring.glide, nullptr));
}

Eina_Bool step(void* data, double position) {
    auto& ring = *static_cast<FocusRing*>(data);
    const double left = (1.0 - position) * (1.0 - position);
    const auto between = [left](int from, int to) {
        return to + static_cast<int>(std::lround((from - to) * left));
    };
    put(ring, {between(ring.from.x, ring.area.x), between(ring.from.y, ring.area.y),
               between(ring.from.width, ring.area.width), between(ring.from.height, ring.area.height)});
    if (position >= 1.0)
        ring.glide = nullptr; // Ecore deletes it
    return ECORE_CALLBACK_RENEW;
}

void go_to(FocusRing& ring, Evas_Object* widget, const Area& area) {
    const bool glides = ring.widget != nullptr && widget == ring.moved_to;
    point_weakly(ring.widget, widget);
    ring.area = area;
    end_glide(ring);
    if (glides) {
        ring.from = area_of(ring.drawn);
        ring.glide = ecore_animator_timeline_add(glide_seconds, step, &ring);
    } else {
        put(ring, area);
        evas_object_show(ring.drawn);
    }
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
        end_glide(ring);
        point_weakly(ring.widget, nullptr);
        evas_object_hide(ring.drawn);
    } else if (const Area area = focus_area(widget); widget != ring.widget || area != ring.area) {
        go_to(ring, widget, area);
    }
    point_weakly(ring.moved_to, nullptr);
}

FocusRing::~FocusRing() {
    end_glide(*this);
    evas_event_callback_del_full(evas_object_evas_get(window), EVAS_CALLBACK_RENDER_PRE, before_frame, this);
    point_weakly(widget, nullptr);
    point_weakly(moved_to, nullptr);
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

void glide_to_focus(Evas_Object* window) {
    if (auto* const ring = attached<FocusRing>(window))
        point_weakly(ring->moved_to, elm_object_focused_object_get(window));
}

} // namespace vell
