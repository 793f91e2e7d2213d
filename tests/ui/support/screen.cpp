// Only the new interface of EFL tells a group of objects from a single one.
#define EFL_BETA_API_SUPPORT

#include "support/screen.h"

#include "application/glib_loop.h"
#include "application/keys.h"

#include <platform/vell.h>

#include <Ecore_Input.h>
#include <Efreet.h>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <string_view>

namespace test {
namespace {

/** Frames that do not wait for an eye. */
constexpr double quick_frame_seconds = 0.001;

struct Elementary {
    Elementary() {
        efreet_cache_disable();
        setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 1); // a frame is drawn when its turn is over
        elm_init(0, nullptr);
        ecore_animator_frametime_set(quick_frame_seconds);
    }
    ~Elementary() { elm_shutdown(); }
    Elementary(const Elementary&) = delete;
    Elementary& operator=(const Elementary&) = delete;
};

struct Session {
    Elementary elementary;
    Session() {
        platform::dispatch_glib_in_ecore();
        platform::add_remote_control_keys();
    }
};

void visit_below(Evas_Object* object, Evas_Object* widget, const Visitor& visitor) {
    if (evas_object_visible_get(object) == EINA_FALSE)
        return;
    if (elm_object_widget_check(object) != EINA_FALSE)
        widget = object;
    visitor(object, widget);
    if (efl_isa(object, EFL_CANVAS_GROUP_CLASS) == EINA_FALSE)
        return;
    Eina_List* const members = evas_object_smart_members_get(object);
    for (const Eina_List* node = members; node != nullptr; node = eina_list_next(node))
        visit_below(static_cast<Evas_Object*>(eina_list_data_get(node)), widget, visitor);
    eina_list_free(members);
}

void post(Evas_Object* window, int type, const char* key) {
    // Ecore frees it.
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory)
    auto* const event = static_cast<Ecore_Event_Key*>(calloc(1, sizeof(Ecore_Event_Key)));
    event->keyname = event->key = key;
    event->window = event->event_window = event->root_window = elm_win_window_id_get(window);
    event->timestamp = static_cast<unsigned>(ecore_loop_time_get() * 1000.0);
    ecore_event_add(type, event, nullptr, nullptr);
}

std::string text_of(const char* text) { return text == nullptr ? "" : text; }

/** What a widget says, as `Screen::seen` lists it; "" when nothing. */
std::string description(Evas_Object* widget) {
    const std::string_view type = evas_object_type_get(widget);
    if (type == "elm_button")
        return elm_vell_button_text_get(widget);
    if (type == "elm_spinner")
        return "[" + std::to_string(std::lround(elm_spinner_value_get(widget))) + "]";
    if (type == "elm_popup")
        return "popup " + text_of(elm_object_part_text_get(widget, "title,text"));
    if (type == "elm_label")
        return text_of(elm_object_text_get(widget));
    if (type == "elm_layout")
        return text_of(elm_object_text_get(widget)) + text_of(elm_object_part_text_get(widget, "vell.value"));
    return "";
}

} // namespace

void start_elementary() { static const Session session; }

void settle() {
    constexpr int turns_with_a_frame = 10; // on a busy machine one turn catches up with many frames
    bool frame = false;
    Ecore_Animator* const watch = ecore_animator_add(
        [](void* seen) -> Eina_Bool {
            *static_cast<bool*>(seen) = true;
            return ECORE_CALLBACK_RENEW;
        },
        &frame);
    for (int turns = 0; turns < turns_with_a_frame; turns += frame ? 1 : 0) {
        frame = false;
        ecore_main_loop_iterate_may_block(1);
    }
    ecore_animator_del(watch);
}

bool await(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
    const auto end = std::chrono::steady_clock::now() + limit;
    bool holds = condition();
    while (!holds && std::chrono::steady_clock::now() < end) {
        settle();
        holds = condition();
    }
    settle();
    return holds;
}

void Screen::type(const char* key) const {
    post(window_, ECORE_EVENT_KEY_DOWN, key);
    post(window_, ECORE_EVENT_KEY_UP, key);
}

void Screen::press(const char* key, int times) const {
    for (int time = 0; time < times; ++time) {
        type(key);
        settle();
    }
}

void Screen::click(const Eina_Rectangle& area) const {
    Evas* const canvas = evas_object_evas_get(window_);
    evas_event_feed_mouse_in(canvas, 0, nullptr);
    evas_event_feed_mouse_move(canvas, area.x + area.w / 2, area.y + area.h / 2, 0, nullptr);
    evas_event_feed_mouse_down(canvas, 1, EVAS_BUTTON_NONE, 0, nullptr);
    evas_event_feed_mouse_up(canvas, 1, EVAS_BUTTON_NONE, 0, nullptr);
    settle();
}

void Screen::wheel(int notches) const {
    for (int notch = 0; notch < std::abs(notches); ++notch)
        evas_event_feed_mouse_wheel(evas_object_evas_get(window_), 0, notches > 0 ? 1 : -1, 0, nullptr);
    settle();
}

std::vector<Evas_Object*> Screen::widgets() const {
    std::vector<Evas_Object*> widgets;
    visit(window_, [&widgets](Evas_Object* object, Evas_Object* widget) {
        if (object == widget && !description(widget).empty())
            widgets.push_back(widget);
    });
    return widgets;
}

std::vector<std::string> Screen::seen() const {
    std::vector<std::string> all;
    std::ranges::transform(widgets(), std::back_inserter(all), description);
    return all;
}

Evas_Object* Screen::find(const std::string& seen) const {
    const std::vector<Evas_Object*> all = widgets();
    const auto found =
        std::find_if(all.rbegin(), all.rend(), [&](auto* it) { return description(it) == seen; });
    return found == all.rend() ? nullptr : *found;
}

std::string Screen::focused() const {
    std::string focused;
    for (Evas_Object* const widget : widgets()) {
        const std::string_view type = evas_object_type_get(widget);
        if ((type == "elm_button" || type == "elm_spinner") && elm_object_focus_get(widget) != EINA_FALSE)
            focused += description(widget);
    }
    return focused;
}

void visit(Evas_Object* window, const Visitor& visitor) {
    for (Evas_Object* object = evas_object_bottom_get(evas_object_evas_get(window)); object != nullptr;
         object = evas_object_above_get(object))
        visit_below(object, nullptr, visitor);
}

Eina_Rectangle geometry(const Evas_Object* widget) {
    Eina_Rectangle area{};
    evas_object_geometry_get(widget, &area.x, &area.y, &area.w, &area.h);
    return area;
}

} // namespace test
