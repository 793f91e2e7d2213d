// The focus manager of a window is declared as beta in Elementary 1.26.
#define EFL_BETA_API_SUPPORT

#include <Efl_Ui.h>

#include "header_focus.h"
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

bool is_entered_upwards(const Evas_Object* header, Eo* window) {
    const Eo* const next =
        efl_ui_focus_manager_request_move(window, EFL_UI_FOCUS_DIRECTION_UP, nullptr, EINA_FALSE);
    return header != nullptr && is_inside(next, header) &&
           !is_inside(efl_ui_focus_manager_focus_get(window), header);
}

Efl_Ui_Focus_Object* move(Eo* window, void*, Efl_Ui_Focus_Direction direction) {
    const auto* const entrance = attached<Entrance>(window);
    if (direction != EFL_UI_FOCUS_DIRECTION_UP || !is_entered_upwards(entrance->header, window))
        return efl_ui_focus_manager_move(efl_super(window, EFL_OBJECT_OVERRIDE_CLASS), direction);
    efl_ui_focus_manager_focus_set(window, entrance->tab);
    return entrance->tab;
}

Entrance& watch_moves(Eo* window) {
    EFL_OPS_DEFINE(operations, EFL_OBJECT_OP_FUNC(efl_ui_focus_manager_move, reinterpret_cast<void*>(move)));
    efl_object_override(window, &operations);
    return attach<Entrance>(window);
}

} // namespace

void enter_header_at(Evas_Object* header, Evas_Object* tab) {
    Eo* const window = elm_object_top_widget_get(header);
    auto* const entrance = attached<Entrance>(window);
    (entrance == nullptr ? watch_moves(window) : *entrance).set(header, tab);
}

} // namespace vell
