#include "support/screen.h"

#include "application/glib_loop.h"
#include "application/keys.h"
#include "ui_driver/screenshot.h"

#include <platform/vell.h>

#include <Ecore_Input.h>
#include <Ecore_X.h>
#include <Efreet.h>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace test {
namespace {

bool is_type(const Evas_Object* object, std::string_view type) {
    return evas_object_type_get(object) == type;
}

template <class Visitor>
void visit_below(Evas_Object* object, Evas_Object* widget, const Visitor& visitor) {
    if (evas_object_visible_get(object) == EINA_FALSE)
        return;
    if (elm_object_widget_check(object) != EINA_FALSE)
        widget = object;
    visitor(object, widget);
    if (efl_isa(object, EFL_CANVAS_GROUP_CLASS) == EINA_FALSE)
        return;
    Eina_List* members = evas_object_smart_members_get(object);
    void* member = nullptr;
    EINA_LIST_FREE(members, member)
    visit_below(static_cast<Evas_Object*>(member), widget, visitor);
}

/** The width that a line of text has when nothing limits it. */
int natural_width(Evas_Object* text) {
    const char* font = nullptr;
    Evas_Font_Size size = 0;
    evas_object_text_font_get(text, &font, &size);
    Evas_Object* const copy = evas_object_text_add(evas_object_evas_get(text));
    evas_object_scale_set(copy, evas_object_scale_get(text));
    evas_object_text_font_set(copy, font, size);
    evas_object_text_text_set(copy, evas_object_text_text_get(text));
    const int width = geometry(copy).w;
    evas_object_del(copy);
    return width;
}

bool is_whole(Evas_Object* text) {
    const Eina_Rectangle area = geometry(text);
    if (is_type(text, "text"))
        return natural_width(text) <= area.w;
    int width = 0;
    int height = 0;
    evas_object_textblock_size_formatted_get(text, &width, &height);
    return width <= area.w && height <= area.h;
}

const char* text_of(Evas_Object* object) {
    if (is_type(object, "text"))
        return evas_object_text_text_get(object);
    return is_type(object, "textblock") ? evas_object_textblock_text_markup_get(object) : nullptr;
}

bool is_in_popup(Evas_Object* widget) {
    while (widget != nullptr && !is_type(widget, "elm_popup"))
        widget = elm_object_parent_widget_get(widget);
    return widget != nullptr;
}

double luminance(const simulator::Color& color) {
    const auto linear = [](std::uint8_t strength) {
        const double part = strength / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color[0]) + 0.7152 * linear(color[1]) + 0.0722 * linear(color[2]);
}

} // namespace

void start_elementary() {
    [[maybe_unused]] static const int initialised = [] {
        efreet_cache_disable();
        setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 1); // a frame is drawn when its turn is over
        return elm_init(0, nullptr);
    }();
    static const platform::GlibLoop loop;
    static const platform::RemoteControlKeys keys;
    ecore_animator_frametime_set(0.001); // no need to wait for a viewer
}

void settle() {
    constexpr int turns_with_a_frame = 10; // on a busy machine one turn catches up with many frames
    bool frame = false;
    const auto note_frame = [](void* seen) -> Eina_Bool { return *static_cast<bool*>(seen) = true; };
    Ecore_Animator* const watch = ecore_animator_add(note_frame, &frame);
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

void run_for(std::chrono::milliseconds time) {
    await([] { return false; }, time);
}

Eina_Rectangle geometry(const Evas_Object* widget) {
    Eina_Rectangle area{};
    evas_object_geometry_get(widget, &area.x, &area.y, &area.w, &area.h);
    return area;
}

bool is_inside(const Eina_Rectangle& inner, const Eina_Rectangle& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w &&
           inner.y + inner.h <= outer.y + outer.h;
}

double contrast(const Eina_Rectangle& area) {
    const simulator::Pixels pixels(static_cast<_XDisplay*>(ecore_x_display_get()), area.x, area.y, area.w,
                                   area.h);
    double darkest = 1.0;
    double lightest = 0.0;
    for (int y = 0; y < area.h; ++y)
        for (int x = 0; x < area.w; ++x) {
            const double light = luminance(pixels.at(x, y));
            darkest = std::min(darkest, light);
            lightest = std::max(lightest, light);
        }
    return (lightest + 0.05) / (darkest + 0.05);
}

void Screen::type(const char* key) const {
    for (const int type : {ECORE_EVENT_KEY_DOWN, ECORE_EVENT_KEY_UP}) {
        // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): Ecore frees it
        auto* const event = static_cast<Ecore_Event_Key*>(calloc(1, sizeof(Ecore_Event_Key)));
        event->keyname = event->key = key;
        event->window = event->event_window = event->root_window = elm_win_window_id_get(window_);
        event->timestamp = static_cast<unsigned>(ecore_loop_time_get() * 1000.0);
        ecore_event_add(type, event, nullptr, nullptr);
    }
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

void Screen::visit(const std::function<void(Evas_Object*, Evas_Object*)>& visitor) const {
    for (Evas_Object* object = evas_object_bottom_get(evas_object_evas_get(window_)); object != nullptr;
         object = evas_object_above_get(object))
        visit_below(object, nullptr, visitor);
}

std::vector<DrawnText> Screen::texts() const {
    std::vector<DrawnText> on_page;
    std::vector<DrawnText> in_popup;
    visit([&](Evas_Object* drawn, Evas_Object* widget) {
        const char* const text = text_of(drawn);
        // The window's own frame, behind everything and no widget, has a title too.
        if (widget != nullptr && text != nullptr && *text != '\0')
            (is_in_popup(widget) ? in_popup : on_page)
                .push_back({text, geometry(drawn), widget, is_whole(drawn)});
    });
    return in_popup.empty() ? on_page : in_popup;
}

std::vector<std::string> Screen::seen() const {
    std::vector<std::string> seen;
    std::ranges::transform(texts(), std::back_inserter(seen), &DrawnText::text);
    return seen;
}

Evas_Object* Screen::find(const std::string& text) const {
    Evas_Object* found = nullptr;
    for (const DrawnText& drawn : texts())
        if (drawn.text == text)
            found = drawn.widget;
    return found;
}

std::string Screen::focused() const {
    Evas_Object* const widget = elm_object_focused_object_get(window_);
    if (widget != nullptr && is_type(widget, "elm_spinner"))
        return "[" + std::to_string(std::lround(elm_spinner_value_get(widget))) + "]";
    return elm_vell_button_text_get(widget);
}

Eina_Rectangle Screen::focus_ring() const {
    Eina_Rectangle ring{};
    visit([&ring](Evas_Object* drawn, Evas_Object* widget) {
        if (widget == nullptr && is_type(drawn, "image") &&
            evas_object_image_border_center_fill_get(drawn) == EVAS_BORDER_FILL_NONE)
            ring = geometry(drawn);
    });
    return ring;
}

} // namespace test
