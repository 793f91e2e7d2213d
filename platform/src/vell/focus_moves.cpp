// The focus manager of a window is declared as beta in Elementary 1.26.
#define EFL_BETA_API_SUPPORT

#include <Efl_Ui.h>

#include "focus_moves.h"
#include "focus_ring.h"
#include "widget.h"

namespace vell {
namespace {

/** Kept with the window; null once the widget is gone. */
struct Entrance {
    static constexpr const char* key = "vell/entrance";
    ~Entrance() { set(nullptr, nullptr); }
    void set(Evas_Object* new_header, Evas_Object* new_tab) {
        point_weakly(header, new_header);
        point_weakly(tab, new_tab);
    }

    Evas_Object* header = nullptr;
    Evas_Object* tab = nullptr;
};

bool is_beside(const Evas_Object* one, const Evas_Object* other) {
    int y = 0;
    int height = 0;
    int other_y = 0;
    int other_height = 0;
    evas_object_geometry_get(one, nullptr, &y, nullptr, &height);
    evas_object_geometry_get(other, nullptr, &other_y, nullptr, &other_height);
    return other_y < y + height && y < other_y + other_height;
}

/** Where a key leads from the widget that has the focus, which is `next` if it is left to Elementary. */
Efl_Ui_Focus_Object* destination(const Entrance& entrance, Efl_Ui_Focus_Direction direction,
                                 Efl_Ui_Focus_Object* focused, Efl_Ui_Focus_Object* next) {
    const bool sideways =
        direction == EFL_UI_FOCUS_DIRECTION_LEFT || direction == EFL_UI_FOCUS_DIRECTION_RIGHT;
    if (sideways && !is_beside(focused, next))
        return focused;
    const bool enters_header = direction == EFL_UI_FOCUS_DIRECTION_UP && entrance.tab != nullptr &&
                               is_inside(next, entrance.header) && !is_inside(focused, entrance.header);
    return enters_header ? entrance.tab : next;
}

Efl_Ui_Focus_Object* move_focus(Eo* window, Efl_Ui_Focus_Direction direction) {
    Eo* const focused = efl_ui_focus_manager_focus_get(window);
    Eo* const next = efl_ui_focus_manager_request_move(window, direction, nullptr, EINA_FALSE);
    const bool in_popup = efl_ui_focus_manager_redirect_get(window) != nullptr;
    if (in_popup || focused == nullptr || next == nullptr)
        return efl_ui_focus_manager_move(efl_super(window, EFL_OBJECT_OVERRIDE_CLASS), direction);
    Eo* const moved_to = destination(*attached<Entrance>(window), direction, focused, next);
    efl_ui_focus_manager_focus_set(window, moved_to);
    return moved_to;
}

Efl_Ui_Focus_Object* move(Eo* window, void*, Efl_Ui_Focus_Direction direction) {
    Efl_Ui_Focus_Object* const moved_to = move_focus(window, direction);
    glide_to_focus(window);
    return moved_to;
}

} // namespace

void watch_focus_moves(Evas_Object* window) {
    if (attached<Entrance>(window) != nullptr)
        return;
    EFL_OPS_DEFINE(operations, EFL_OBJECT_OP_FUNC(efl_ui_focus_manager_move, reinterpret_cast<void*>(move)));
    efl_object_override(window, &operations);
    attach<Entrance>(window);
}

void enter_header_at(Evas_Object* header, Evas_Object* tab) {
    if (auto* const entrance = attached<Entrance>(elm_object_top_widget_get(header)))
        entrance->set(header, tab);
}

} // namespace vell
