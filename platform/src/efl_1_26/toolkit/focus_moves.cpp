#include <Efl_Ui.h>

#include "common/object_data.h"
#include "focus_moves.h"
#include "window_manager.h"

#include <array>
#include <string>
#include <string_view>

namespace vell {
namespace {

/** State attached to the window. */
struct Places {
    static constexpr const char* key = "vell/focus_places";
    bool (*is_behind_popup)(Evas_Object* widget) = nullptr;
    WeakWidget header;
    WeakWidget tab;      /**< gets the focus when the header is entered */
    WeakWidget given_up; /**< the widget that gave up the focus, while nothing is focused */
};

bool is_beside(const Evas_Object* one, const Evas_Object* other) {
    int y = 0;
    int height = 0;
    int other_y = 0;
    int other_height = 0;
    evas_object_geometry_get(one, nullptr, &y, nullptr, &height);
    evas_object_geometry_get(other, nullptr, &other_y, nullptr, &other_height);
    return eina_spans_intersect(y, height, other_y, other_height) != 0;
}

/** Returns the widget to focus: `focused` if Left or Right finds nothing beside it, the tab when the header is entered,
 * the widget below the tab when the header is left, and otherwise Elementary's choice `next`. */
Efl_Ui_Focus_Object* destination(Eo* window, Efl_Ui_Focus_Direction direction, Efl_Ui_Focus_Object* focused,
                                 Efl_Ui_Focus_Object* next) {
    const Places& places = *attached<Places>(window);
    const bool sideways =
        direction == EFL_UI_FOCUS_DIRECTION_LEFT || direction == EFL_UI_FOCUS_DIRECTION_RIGHT;
    if (sideways && !is_beside(focused, next))
        return focused;
    const bool was_in_header = is_inside(focused, places.header);
    if (places.tab == nullptr || was_in_header == is_inside(next, places.header))
        return next;
    if (!was_in_header)
        return places.tab;
    Eo* const below_tab = efl_ui_focus_manager_request_move(window, direction, places.tab, EINA_FALSE);
    return below_tab != nullptr ? below_tab : next;
}

Efl_Ui_Focus_Object* move_focus(Eo* window, Efl_Ui_Focus_Direction direction) {
    auto& places = *attached<Places>(window);
    Eo* const focused = efl_ui_focus_manager_focus_get(window);
    if (focused == nullptr && places.given_up != nullptr) {
        efl_ui_focus_manager_focus_set(window, places.given_up);
        places.given_up = nullptr;
        if (Eo* const widget = efl_ui_focus_manager_focus_get(window)) // null if it cannot take the focus now
            return widget;
    }
    Eo* const next = efl_ui_focus_manager_request_move(window, direction, nullptr, EINA_FALSE);
    const bool in_popup = efl_ui_focus_manager_redirect_get(window) != nullptr;
    if (in_popup || focused == nullptr || next == nullptr)
        return efl_ui_focus_manager_move(efl_super(window, EFL_OBJECT_OVERRIDE_CLASS), direction);
    Eo* const moved_to = destination(window, direction, focused, next);
    efl_ui_focus_manager_focus_set(window, moved_to);
    return moved_to;
}

Efl_Ui_Focus_Object* move(Eo* window, void*, Efl_Ui_Focus_Direction direction) {
    constexpr std::array<const char*, EFL_UI_FOCUS_DIRECTION_LAST> arrows{nullptr, nullptr, "Up",
                                                                          "Down",  "Right", "Left"};
    Evas_Object* const before = elm_object_focused_object_get(window);
    Efl_Ui_Focus_Object* const moved_to = move_focus(window, direction);
    const char* const arrow = arrows.at(direction);
    if (arrow != nullptr && before != nullptr && elm_object_focused_object_get(window) == before)
        bump_ring(before, arrow);
    return moved_to;
}

void give_up(Eo* window, void*) {
    auto& given_up = attached<Places>(window)->given_up;
    given_up = efl_ui_focus_manager_focus_get(window);
    efl_ui_focus_manager_reset_history(window);
    // The window must receive the keys, so that one of them can move the focus again.
    evas_object_focus_set(window, EINA_TRUE);
    if (given_up != nullptr)
        evas_object_smart_callback_call(given_up, "vell,focus,given,up", nullptr);
}

/** The widget to focus when the window gets the keyboard: none, if a widget gave up the focus. */
Efl_Ui_Focus_Object* first_below(Eo* window, void*, Efl_Ui_Focus_Object* parent) {
    if (parent == window && attached<Places>(window)->given_up != nullptr)
        return nullptr;
    return efl_ui_focus_manager_request_subchild(efl_super(window, EFL_OBJECT_OVERRIDE_CLASS), parent);
}

/** The "focus_set" operation of the window and of its inner focus manager. */
void set_focus(Eo* manager, void*, Efl_Ui_Focus_Object* widget) {
    const Eo* const window = efl_isa(manager, EFL_UI_WIN_CLASS) ? manager : efl_parent_get(manager);
    const auto* const places = attached<Places>(window); // null for a manager that is leaving its window
    if (places != nullptr && places->is_behind_popup(widget))
        efl_ui_focus_manager_reset_history(
            manager); // otherwise the previous widget gets the focus when the popup closes
    else
        efl_ui_focus_manager_focus_set(efl_super(manager, EFL_OBJECT_OVERRIDE_CLASS), widget);
}

void raise(Eo* window, void*) {
    efl_gfx_stack_raise_to_top(efl_super(window, EFL_OBJECT_OVERRIDE_CLASS));
    get_keyboard(window);
}

void on_key(void*, Evas*, Evas_Object* window, void* event) {
    const char* const key = static_cast<Evas_Event_Key_Down*>(event)->key;
    if (key != nullptr && std::string_view(key) == "Return" &&
        elm_object_focused_object_get(window) == nullptr)
        nudge_focus(window);
}

} // namespace

void correct_focus(Evas_Object* window, bool (*is_behind_popup)(Evas_Object* widget)) {
    if (attached<Places>(window) != nullptr)
        return;
    attach<Places>(window).is_behind_popup = is_behind_popup;
    EFL_OPS_DEFINE(
        operations, EFL_OBJECT_OP_FUNC(efl_ui_focus_manager_move, reinterpret_cast<void*>(move)),
        EFL_OBJECT_OP_FUNC(efl_ui_focus_manager_pop_history_stack, reinterpret_cast<void*>(give_up)),
        EFL_OBJECT_OP_FUNC(efl_ui_focus_manager_request_subchild, reinterpret_cast<void*>(first_below)),
        EFL_OBJECT_OP_FUNC(efl_ui_focus_manager_focus_set, reinterpret_cast<void*>(set_focus)),
        EFL_OBJECT_OP_FUNC(efl_gfx_stack_raise_to_top, reinterpret_cast<void*>(raise)));
    efl_object_override(window, &operations);
    evas_object_event_callback_add(window, EVAS_CALLBACK_KEY_DOWN, on_key, nullptr);
    // The window delegates to an inner focus manager. When a popup is hidden while the focus history is empty, that
    // manager focuses the first widget without calling the window (observed).
    EFL_OPS_DEFINE(inner_operations,
                   EFL_OBJECT_OP_FUNC(efl_ui_focus_manager_focus_set, reinterpret_cast<void*>(set_focus)));
    Eina_Iterator* const children = efl_children_iterator_new(window);
    for (void* child = nullptr; eina_iterator_next(children, &child) != EINA_FALSE;)
        if (efl_isa(static_cast<Eo*>(child), EFL_UI_FOCUS_MANAGER_CALC_CLASS) != EINA_FALSE)
            efl_object_override(static_cast<Eo*>(child), &inner_operations);
    eina_iterator_free(children);
}

void nudge_focus(Evas_Object* window) {
    const auto* const places = attached<Places>(window);
    Evas_Object* nudged = elm_object_focused_object_get(window);
    if (nudged == nullptr && places != nullptr)
        nudged = places->given_up;
    if (nudged != nullptr)
        elm_layout_signal_emit(nudged, "vell,nudge", "vell");
}

void bump_ring(Evas_Object* widget, const std::string& arrow) {
    const bool sideways = arrow == "Left" || arrow == "Right";
    const bool mirrored = sideways && elm_config_mirrored_get() != EINA_FALSE; // Edje mirrors the animation
    const std::string drawn_arrow = !mirrored ? arrow : arrow == "Left" ? "Right" : "Left";
    elm_layout_signal_emit(widget, ("vell,bump," + drawn_arrow).c_str(), "vell");
}

void drop_focus_in(const Evas_Object* parent) {
    Evas_Object* const window = elm_object_top_widget_get(parent);
    if (!is_inside(elm_object_focused_object_get(window), parent))
        return;
    efl_ui_focus_manager_reset_history(window);
    evas_object_focus_set(window, EINA_TRUE); // the window receives the keys meanwhile
}

void enter_header_at(Evas_Object* header, Evas_Object* tab) {
    auto* const places = attached<Places>(elm_object_top_widget_get(header));
    if (places == nullptr)
        return;
    places->header = header;
    places->tab = tab;
}

} // namespace vell
