/** Keys, mouse, pixels and focus of a window of this process. */
#pragma once

#include "application/glib_loop.h"
#include "application/keys.h"
#include "ui_driver/keyboard.h"
#include "ui_driver/screenshot.h"

#include <platform/vell.h>

#include <Ecore_Input.h>
#include <Ecore_X.h>
#include <Efreet.h>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <memory>
#include <string_view>

namespace test {

/** Initialises Elementary with the framework's main loop and keys, once per process. */
inline void start_elementary() {
    static const std::shared_ptr<void> elementary = [] {
        efreet_cache_disable();
        setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 1); // draws each frame at the end of its loop iteration
        elm_init(0, nullptr);
        platform::dispatch_glib_in_ecore();
        platform::add_remote_control_keys();
        return std::shared_ptr<void>(nullptr, [](void*) { elm_shutdown(); });
    }();
    ecore_animator_frametime_set(0.001); // as fast as possible
}

/** Runs the main loop until everything but timers is processed and drawn. */
inline void settle() {
    constexpr int iterations_with_a_frame = 10; // on a busy machine one iteration may contain many frames
    bool frame = false;
    const auto note_frame = [](void* seen) -> Eina_Bool { return *static_cast<bool*>(seen) = true; };
    Ecore_Animator* const watch = ecore_animator_add(note_frame, &frame);
    for (int turns = 0; turns < iterations_with_a_frame; turns += frame ? 1 : 0) {
        frame = false;
        ecore_main_loop_iterate_may_block(1);
    }
    ecore_animator_del(watch);
}

/** Runs the main loop until the condition holds; returns false on time-out. */
inline bool await(const std::function<bool()>& condition,
                  std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    const auto end = std::chrono::steady_clock::now() + limit;
    bool holds = condition();
    for (; !holds && std::chrono::steady_clock::now() < end; holds = condition())
        settle();
    settle();
    return holds;
}

/** Runs the main loop for a time. */
inline void run_for(std::chrono::milliseconds time) {
    await([] { return false; }, time);
}

/** A widget's area on the screen. */
inline Eina_Rectangle geometry(const Evas_Object* widget) {
    Eina_Rectangle area{};
    evas_object_geometry_get(widget, &area.x, &area.y, &area.w, &area.h);
    return area;
}

/** Whether an area contains another one completely. */
inline bool is_inside(const Eina_Rectangle& inner, const Eina_Rectangle& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w &&
           inner.y + inner.h <= outer.y + outer.h;
}

/** Reads the screen over a private connection, to see only what is flushed. */
inline simulator::Pixels look_at(const Eina_Rectangle& area) {
    static const simulator::Display display = simulator::open_display();
    return {display.get(), area.x, area.y, area.w, area.h};
}

/** A pixel of a button's plain area, without text or symbol. */
inline simulator::Pixels fill_of(const Evas_Object* button) {
    const auto [x, y, width, height] = geometry(button);
    return look_at({x + width * 17 / 20, y + height / 2, 1, 1});
}

inline double luminance(const simulator::Color& color) {
    const auto linear = [](std::uint8_t strength) {
        const double part = strength / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color[0]) + 0.7152 * linear(color[1]) + 0.0722 * linear(color[2]);
}

/** The contrast between the lightest and the darkest pixel of an area, 1 to 21 (WCAG 2). */
inline double contrast(const Eina_Rectangle& area) {
    const simulator::Pixels pixels = look_at(area);
    double darkest = 1.0;
    double lightest = 0.0;
    for (int pixel = 0; pixel < area.w * area.h; ++pixel) {
        const double light = luminance(pixels.at(pixel % area.w, pixel / area.w));
        darkest = std::min(darkest, light);
        lightest = std::max(lightest, light);
    }
    return (lightest + 0.05) / (darkest + 0.05);
}

inline bool is_type(const Evas_Object* object, std::string_view type) {
    return evas_object_type_get(object) == type;
}

/** Called with a visible object and its widget, if any. */
using Visitor = std::function<void(Evas_Object* drawn, Evas_Object* widget)>;

inline void visit(Evas_Object* object, Evas_Object* widget, const Visitor& visitor) {
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
    visit(static_cast<Evas_Object*>(member), widget, visitor);
}

/** Whether a text is neither clipped nor shortened with an ellipsis. */
inline bool is_whole(Evas_Object* text) {
    const Eina_Rectangle area = geometry(text);
    int width = 0;
    int height = 0;
    if (is_type(text, "textblock")) {
        evas_object_textblock_size_formatted_get(text, &width, &height);
        return width <= area.w && height <= area.h;
    }
    const char* font = nullptr;
    evas_object_text_font_get(text, &font, &height);
    Evas_Object* const copy = evas_object_text_add(evas_object_evas_get(text)); // without a size limit
    evas_object_scale_set(copy, evas_object_scale_get(text));
    evas_object_text_font_set(copy, font, height);
    evas_object_text_text_set(copy, evas_object_text_text_get(text));
    width = geometry(copy).w;
    evas_object_del(copy);
    return width <= area.w;
}

inline bool is_in_popup(Evas_Object* widget) {
    while (widget != nullptr && !is_type(widget, "elm_popup"))
        widget = elm_object_parent_widget_get(widget);
    return widget != nullptr;
}

struct DrawnText {
    std::string text;
    Eina_Rectangle area; /**< of the text itself */
    Evas_Object* widget; /**< the text's widget */
    bool whole;
};

class Screen {
public:
    explicit Screen(Evas_Object* window) : window_(window) {}
    [[nodiscard]] Evas_Object* window() const { return window_; }

    /** Queues a key press and release as X events for the next loop iteration. */
    void type(const char* key) const {
        for (const int type : {ECORE_EVENT_KEY_DOWN, ECORE_EVENT_KEY_UP}) {
            // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): Ecore frees it
            auto* const event = static_cast<Ecore_Event_Key*>(calloc(1, sizeof(Ecore_Event_Key)));
            event->keyname = event->key = key;
            event->window = event->event_window = event->root_window = elm_win_window_id_get(window_);
            event->timestamp = static_cast<unsigned>(ecore_loop_time_get() * 1000.0);
            ecore_event_add(type, event, nullptr, nullptr);
        }
    }

    /** Presses and releases a key repeatedly, and settles each time. */
    void press(const char* key, int times = 1) const {
        for (int time = 0; time < times; ++time) {
            type(key);
            settle();
        }
    }

    /** Calls `visitor` with all visible objects in drawing order. */
    void visit_all(const Visitor& visitor) const {
        for (Evas_Object* object = evas_object_bottom_get(evas_object_evas_get(window_)); object != nullptr;
             object = evas_object_above_get(object))
            visit(object, nullptr, visitor);
    }

    /** The visible texts in drawing order; only those of the popup if one is open. */
    [[nodiscard]] std::vector<DrawnText> texts() const {
        std::vector<DrawnText> on_page;
        std::vector<DrawnText> in_popup;
        visit_all([&](Evas_Object* drawn, Evas_Object* widget) {
            const char* const text = is_type(drawn, "text") ? evas_object_text_text_get(drawn)
                                     : is_type(drawn, "textblock")
                                         ? evas_object_textblock_text_markup_get(drawn)
                                         : "";
            if (widget != nullptr && text != nullptr && *text != '\0') // the window's frame has a title, too
                (is_in_popup(widget) ? in_popup : on_page)
                    .push_back({text, geometry(drawn), widget, is_whole(drawn)});
        });
        return in_popup.empty() ? on_page : in_popup;
    }
    [[nodiscard]] std::vector<std::string> seen() const {
        std::vector<std::string> seen;
        std::ranges::transform(texts(), std::back_inserter(seen), &DrawnText::text);
        return seen;
    }
    /** The last widget with one of these texts; null if there is none. */
    [[nodiscard]] Evas_Object* find(const std::string& text) const {
        const auto all = texts();
        const auto found =
            std::find_if(all.rbegin(), all.rend(), [&](const auto& each) { return each.text == text; });
        return found == all.rend() ? nullptr : found->widget;
    }
    /** The text of the button that has the focus, "[number]" for a spinner, or "". */
    [[nodiscard]] std::string focused() const {
        Evas_Object* const widget = elm_object_focused_object_get(window_);
        if (widget != nullptr && is_type(widget, "elm_spinner"))
            return "[" + std::to_string(std::lround(elm_spinner_value_get(widget))) + "]";
        return elm_vell_button_text_get(widget);
    }
    /** The area of the focus ring; empty if none is visible. */
    [[nodiscard]] Eina_Rectangle focus_ring() const {
        Eina_Rectangle ring{};
        constexpr int own_border = 72; // unique to the ring's image
        visit_all([&ring](Evas_Object* drawn, Evas_Object*) {
            int border = 0;
            if (is_type(drawn, "image"))
                evas_object_image_border_get(drawn, &border, nullptr, nullptr, nullptr);
            if (border == own_border)
                ring = geometry(drawn);
        });
        return ring;
    }

private:
    Evas_Object* window_;
};

} // namespace test
