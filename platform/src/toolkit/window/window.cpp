#include "platform/window.h"

#include <Ecore_Evas.h>

int elm_win_aux_hint_add(Evas_Object* window, const char* hint, const char* value) {
    if (!window || !hint || !value)
        return -1;
    const Evas* const canvas = evas_object_evas_get(window);
    Ecore_Evas* const ecore_evas = canvas ? ecore_evas_ecore_evas_get(canvas) : nullptr;
    return ecore_evas ? ecore_evas_aux_hint_add(ecore_evas, hint, value) : -1;
}
