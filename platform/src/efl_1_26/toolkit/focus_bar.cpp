// Overriding an operation of one object is declared as beta in Elementary 1.26.
#define EFL_BETA_API_SUPPORT

#include <Efl_Ui.h>

#include "focus_bar.h"
#include "toolkit/widgets/widget.h"

namespace vell {
namespace {

struct Watcher {
    static constexpr const char* key = "vell/focus_bar";
    void (*changed)(Evas_Object* widget) = nullptr;
};

void allow(Eo* widget, void* /*data*/, Eina_Bool allowed) {
    efl_ui_widget_focus_allow_set(efl_super(widget, EFL_OBJECT_OVERRIDE_CLASS), allowed);
    attached<Watcher>(widget)->changed(widget);
}

} // namespace

void watch_focus_bar(Evas_Object* widget, void (*changed)(Evas_Object* widget)) {
    attach<Watcher>(widget).changed = changed;
    EFL_OPS_DEFINE(operations,
                   EFL_OBJECT_OP_FUNC(efl_ui_widget_focus_allow_set, reinterpret_cast<void*>(allow)));
    efl_object_override(widget, &operations);
}

} // namespace vell
