#include "manager.h"

#include "efl_1_26/toolkit/focus_moves.h"
#include "efl_1_26/toolkit/focus_ring.h"
#include "efl_1_26/toolkit/window_manager.h"

#include "common/dropped_press.h"
#include "common/installed_files.h"
#include "settings/settings_file.h"

#include <platform/vell.h>

#include <algorithm>
#include <cmath>
#include <glib.h>
#include <utility>

namespace vell {
namespace {

constexpr double page_units_across = 240.0;
constexpr double page_units_down = 135.0;
/** The theme is drawn for a window 1920 pixels wide. */
constexpr double theme_pixels_per_unit = 8.0;

/** Pixels of a layout unit in a window of this size: a page of 16:9 fits into it. */
double unit_in(const Size& window) {
    return std::min(window.width / page_units_across, window.height / page_units_down);
}

Eina_Bool on_press_dropped(void* window, int /*type*/, void* /*event*/) {
    nudge_focus(static_cast<Evas_Object*>(window));
    return ECORE_CALLBACK_PASS_ON;
}

} // namespace

Manager& Manager::instance() {
    static Manager manager;
    return manager;
}

bool Manager::init(Evas_Object* window) {
    if (window == nullptr)
        return false;
    fini();
    window_ = window;
    evas_object_event_callback_add(window, EVAS_CALLBACK_RESIZE, on_window_resized, this);
    evas_object_event_callback_add(window, EVAS_CALLBACK_DEL, on_window_deleted, this);
    if (elm_theme_overlay_list_get(nullptr) == nullptr) // the framework adds it before the window is made
        elm_theme_overlay_add(nullptr, platform::theme_file().c_str());
    elm_config_finger_size_set(0);
    ring_the_focus(window);
    correct_focus(window);
    show_handler_ = show_under_any_manager(window);
    drop_handler_ = ecore_event_handler_add(platform::dropped_press_event(), on_press_dropped, window);
    set_window_size();
    return g_file_test(platform::theme_file().c_str(), G_FILE_TEST_EXISTS) != FALSE;
}

void Manager::fini() {
    if (window_ == nullptr)
        return;
    evas_object_event_callback_del_full(window_, EVAS_CALLBACK_RESIZE, on_window_resized, this);
    evas_object_event_callback_del_full(window_, EVAS_CALLBACK_DEL, on_window_deleted, this);
    window_ = nullptr;
    while (!waiting_.empty())
        forget_waiting(waiting_.back());
    for (Ecore_Event_Handler** const handler : {&show_handler_, &drop_handler_})
        if (*handler != nullptr)
            ecore_event_handler_del(std::exchange(*handler, nullptr));
    if (show_job_ != nullptr)
        ecore_job_del(std::exchange(show_job_, nullptr));
}

void Manager::set_window_size() {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    if (const auto size = platform::settings::size("screen/size")) {
        width = size->width;
        height = size->height;
    } else {
        elm_win_screen_size_get(window_, &x, &y, &width, &height);
        place_for_user(window_, x, y);
        elm_win_fullscreen_set(window_, EINA_TRUE);
    }
    if (width <= 0 || height <= 0)
        return;
    unit_ = unit_in({width, height});
    set_scale({width, height});
    evas_object_resize(window_, width, height);
}

void Manager::set_scale(const Size& window) {
    const double unit_now = unit_in(window);
    ratio_ = unit_now / unit_;
    elm_config_scale_set(unit_now / theme_pixels_per_unit);
}

int Manager::rescaled(int pixels) const { return static_cast<int>(std::lround(pixels * ratio_)); }

Area Manager::page_area(const Area& window) const {
    const double unit_now = unit_ * ratio_;
    const int width = static_cast<int>(std::lround(page_units_across * unit_now));
    const int height = static_cast<int>(std::lround(page_units_down * unit_now));
    return {window.x + (window.width - width) / 2, window.y + (window.height - height) / 2, width, height};
}

ItemRequest Manager::rescaled(ItemRequest request) const {
    for (Size* const size : {&request.given, &request.minimum})
        *size = {rescaled(size->width), rescaled(size->height)};
    return request;
}

void Manager::show_later(Evas_Object* object) {
    waiting_.push_back(object);
    evas_object_event_callback_add(object, EVAS_CALLBACK_DEL, on_waiting_deleted, this);
    if (show_job_ == nullptr)
        show_job_ = ecore_job_add(
            [](void* data) {
                auto* const manager = static_cast<Manager*>(data);
                manager->show_job_ = nullptr;
                manager->show_waiting();
            },
            this);
}

void Manager::show_waiting() {
    while (!waiting_.empty()) {
        Evas_Object* const object = waiting_.front();
        forget_waiting(object);
        evas_object_show(object);
    }
}

void Manager::forget_waiting(Evas_Object* object) {
    evas_object_event_callback_del_full(object, EVAS_CALLBACK_DEL, on_waiting_deleted, this);
    std::erase(waiting_, object);
}

void Manager::on_window_resized(void* data, Evas*, Evas_Object* window, void*) {
    Size size;
    evas_object_geometry_get(window, nullptr, nullptr, &size.width, &size.height);
    if (size.width > 0 && size.height > 0)
        static_cast<Manager*>(data)->set_scale(size);
}

void Manager::on_window_deleted(void* data, Evas*, Evas_Object*, void*) {
    static_cast<Manager*>(data)->fini();
}

void Manager::on_waiting_deleted(void* data, Evas*, Evas_Object* object, void*) {
    static_cast<Manager*>(data)->forget_waiting(object);
}

} // namespace vell

bool elm_vell_manager_init(Evas_Object* window) { return vell::Manager::instance().init(window); }

void elm_vell_manager_fini() { vell::Manager::instance().fini(); }

int elm_vell_unit_to_pixel(double units) {
    return static_cast<int>(std::lround(units * vell::Manager::instance().unit()));
}
