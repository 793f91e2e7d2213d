// Elementary's accessibility calls are declared as beta in 1.26.
#define EFL_BETA_API_SUPPORT

#include "accessible.h"
#include "efl_1_26/toolkit/accessible_corrections.h"

#include <efl_access_object.eo.h>
#include <string_view>

namespace vell {
void set_accessible_role(Evas_Object* widget, Role role) {
    efl_access_object_role_set(widget,
                               role == Role::heading ? EFL_ACCESS_ROLE_HEADING : EFL_ACCESS_ROLE_LABEL);
}

void set_accessible_name(Evas_Object* widget, const char* name) {
    efl_access_object_i18n_name_set(widget, name);
    say_accessible_name(widget);
}

void set_accessible_description(Evas_Object* widget, const char* description) {
    efl_access_object_description_set(widget, description);
}

void label_accessible(Evas_Object* widget, Evas_Object* text) {
    const char* const name = efl_access_object_i18n_name_get(text);
    if (name == nullptr || !std::string_view(name).ends_with(": "))
        return;
    efl_access_object_relationship_append(widget, EFL_ACCESS_RELATION_TYPE_LABELLED_BY, text);
    efl_access_object_relationship_append(text, EFL_ACCESS_RELATION_TYPE_LABEL_FOR, widget);
}

} // namespace vell
