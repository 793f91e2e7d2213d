#include "common/dropped_press.h"
#include "common/installed_files.h"
#include "common/object_data.h"
#include "efl_1_26/toolkit/focus_moves.h"
#include "efl_1_26/toolkit/window_manager.h"
#include "settings/settings_file.h"
#include "toolkit/layout_engine/scale.h"
#include "toolkit/widgets/popup.h"

#include <platform/vell.h>

#include <glib.h>

namespace {

/** The theme is drawn for a window 1920 pixels wide. */
constexpr double theme_pixels_per_unit = 8.0;

/** State attached to the window. */
struct Handlers {
    static constexpr const char* key = "vell/handlers";
    ~Handlers() {
        for (Ecore_Event_Handler* const handler : {shown, dropped})
            if (handler != nullptr)
                ecore_event_handler_del(handler);
    }

    Ecore_Event_Handler* shown = nullptr;
    Ecore_Event_Handler* dropped = nullptr;
};

void set_scale(const vell::Size& window) {
    const double unit_now = vell::unit_in(window);
    vell::scale().ratio = unit_now / vell::scale().unit;
    elm_config_scale_set(unit_now / theme_pixels_per_unit);
}

void set_window_size(Evas_Object* window) {
    vell::Size size;
    if (const auto setting = platform::settings::size("screen/size")) {
        size = {setting->width, setting->height};
    } else {
        int x = 0;
        int y = 0;
        elm_win_screen_size_get(window, &x, &y, &size.width, &size.height);
        vell::place_for_user(window, x, y);
        elm_win_fullscreen_set(window, EINA_TRUE);
    }
    if (size.width <= 0 || size.height <= 0)
        return;
    vell::scale().unit = vell::unit_in(size);
    set_scale(size);
    evas_object_resize(window, size.width, size.height);
}

void on_resized(void*, Evas*, Evas_Object* window, void*) {
    vell::Size size;
    evas_object_geometry_get(window, nullptr, nullptr, &size.width, &size.height);
    if (size.width > 0 && size.height > 0)
        set_scale(size);
}

Eina_Bool on_press_dropped(void* window, int /*type*/, void* /*event*/) {
    vell::nudge_focus(static_cast<Evas_Object*>(window));
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace

bool elm_vell_manager_init(Evas_Object* window) {
    if (window == nullptr)
        return false;
    if (elm_theme_overlay_list_get(nullptr) == nullptr) // not yet added by the framework
        elm_theme_overlay_add(nullptr, platform::theme_file().c_str());
    elm_config_finger_size_set(0);
    elm_config_window_auto_focus_enable_set(EINA_FALSE); // or the next key shows Elementary's highlight
    elm_win_focus_highlight_enabled_set(window, EINA_FALSE);
    vell::correct_focus(window, vell::has_to_wait_for_popup);
    if (vell::attached<Handlers>(window) == nullptr) {
        auto& [shown, dropped] = vell::attach<Handlers>(window);
        shown = vell::show_under_any_manager(window);
        dropped = ecore_event_handler_add(platform::dropped_press_event(), on_press_dropped, window);
        evas_object_event_callback_add(window, EVAS_CALLBACK_RESIZE, on_resized, nullptr);
    }
    set_window_size(window);
    return g_file_test(platform::theme_file().c_str(), G_FILE_TEST_EXISTS) != FALSE;
}

void elm_vell_manager_fini() {} // all state is attached to the window and freed with it

int elm_vell_unit_to_pixel(double units) { return vell::pixels(units, vell::scale().unit); }
