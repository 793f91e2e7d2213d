/** A window of this process: its keys, pixels, texts and focus. */
#pragma once

#include "application/glib_loop.h"
#include "application/keys.h"
#include "efl_1_26/application/default_theme.h"
#include "support/log_capture.h"
#include "ui_driver/keyboard.h"
#include "ui_driver/screenshot.h"

#include <platform/vell.h>

#include <Ecore_X.h>
#include <Efreet.h>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <string_view>

namespace test {

/** Runs the main loop until everything but timers is processed and drawn. */
inline void settle() {
    int frames = 0;
    const auto count = [](void* counter) -> Eina_Bool { return ++*static_cast<int*>(counter) != 0; };
    Ecore_Animator* const watch = ecore_animator_add(count, &frames);
    for (int iterations = 0, before = 0; iterations < 10; before = frames) {
        ecore_main_loop_iterate_may_block(1);
        iterations += frames == before ? 0 : 1; // an iteration may draw many frames
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

/** Whether `inner` lies completely within `outer`. */
inline bool is_inside(const Eina_Rectangle& inner, const Eina_Rectangle& outer) {
    return inner.x >= outer.x && inner.y >= outer.y && inner.x + inner.w <= outer.x + outer.w &&
           inner.y + inner.h <= outer.y + outer.h;
}

/** A second connection: its keys arrive as from a keyboard; it sees only what the window's connection has flushed. */
inline const simulator::Display& display() {
    static const simulator::Display display = simulator::open_display();
    return display;
}

inline simulator::Pixels look_at(const Eina_Rectangle& area) {
    return {display().get(), area.x, area.y, area.w, area.h};
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

/** The contrast between the lightest and the darkest pixel of an area, from 1 (none) to 21. */
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

/** A visible object, its widget, if any, and its text. */
struct Drawn {
    Evas_Object* object;
    Evas_Object* widget;
    std::string text;
};

inline std::string text_of(Evas_Object* object) {
    const char* const text = is_type(object, "text")        ? evas_object_text_text_get(object)
                             : is_type(object, "textblock") ? evas_object_textblock_text_markup_get(object)
                                                            : nullptr;
    return text == nullptr ? "" : text;
}

/** Appends an object and its members in drawing order, if visible. */
inline void append_drawn(std::vector<Drawn>& drawn, Evas_Object* object, Evas_Object* widget) {
    if (evas_object_visible_get(object) == EINA_FALSE)
        return;
    if (elm_object_widget_check(object) != EINA_FALSE)
        widget = object;
    drawn.push_back({object, widget, text_of(object)});
    if (efl_isa(object, EFL_CANVAS_GROUP_CLASS) == EINA_FALSE)
        return;
    Eina_List* members = evas_object_smart_members_get(object);
    void* member = nullptr;
    EINA_LIST_FREE(members, member)
    append_drawn(drawn, static_cast<Evas_Object*>(member), widget);
}

inline bool is_in_popup(const Drawn& drawn) {
    const Evas_Object* widget = drawn.widget;
    while (widget != nullptr && !is_type(widget, "elm_popup"))
        widget = elm_object_parent_widget_get(widget);
    return widget != nullptr;
}

/** A test with a window, which the derived class creates, shows and deletes. */
class WindowTest : public testing::Test {
protected:
    WindowTest() {
        static const std::shared_ptr<void> elementary = [] {
            efreet_cache_disable();
            setenv("ECORE_EVAS_FORCE_SYNC_RENDER", "1", 1); // a frame is drawn when its iteration ends
            platform::replace_default_theme();
            elm_init(0, nullptr);
            platform::dispatch_glib_in_ecore();
            platform::add_remote_control_keys();
            return std::shared_ptr<void>(nullptr, [](void*) { elm_shutdown(); });
        }();
        ecore_animator_frametime_set(0.001); // as fast as possible
    }
    ~WindowTest() override {
        elm_config_mirrored_set(EINA_FALSE);
        settle();
        EXPECT_THAT(log.library_warnings(), testing::IsEmpty());
    }

    /** Presses and releases a key. */
    static void type(const char* key) {
        simulator::press_key(display(), key);
        ecore_x_sync(); // now this process's connection has received the key, too
    }
    static void press(const char* key) {
        type(key);
        settle();
    }

    /** All visible objects in drawing order. */
    [[nodiscard]] std::vector<Drawn> drawn() const {
        std::vector<Drawn> drawn;
        for (Evas_Object* object = evas_object_bottom_get(evas_object_evas_get(window)); object != nullptr;
             object = evas_object_above_get(object))
            append_drawn(drawn, object, nullptr);
        return drawn;
    }
    /** The visible texts in drawing order; only those of the popup if one is open. */
    [[nodiscard]] std::vector<Drawn> texts() const {
        std::vector<Drawn> texts = drawn();
        std::erase_if(texts, [](const Drawn& each) { // the window's frame has a title, too, but is no widget
            return each.text.empty() || each.widget == nullptr;
        });
        if (std::ranges::any_of(texts, is_in_popup))
            std::erase_if(texts, std::not_fn(is_in_popup));
        return texts;
    }
    [[nodiscard]] std::vector<std::string> seen() const {
        std::vector<std::string> seen;
        std::ranges::transform(texts(), std::back_inserter(seen), &Drawn::text);
        return seen;
    }
    /** The last widget with this text; null if there is none. */
    [[nodiscard]] Evas_Object* find(const std::string& text) const {
        Evas_Object* found = nullptr;
        for (const Drawn& each : texts())
            if (each.text == text)
                found = each.widget;
        return found;
    }
    /** The text of the button that has the focus, or "". */
    [[nodiscard]] std::string focused() const {
        return elm_vell_button_text_get(elm_object_focused_object_get(window));
    }

    LogCapture log; // keeps log messages out of the test's output
    Evas_Object* window = nullptr;
};

} // namespace test
