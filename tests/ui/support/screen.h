/** A window of this process as its user has it: keys, the mouse, what is drawn, and what has the focus. */
#pragma once

#include <Elementary.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace test {

/** Initialises Elementary with the framework's main loop and keys, once per process. */
void start_elementary();
/** Runs the main loop until everything that waits for no time has happened and is drawn. */
void settle();
/** Runs the main loop until the condition holds; false when it does not within the limit. */
bool await(const std::function<bool()>& condition,
           std::chrono::milliseconds limit = std::chrono::seconds(30));
/** Runs the main loop for a time. */
void run_for(std::chrono::milliseconds time);

/** A widget's area on the screen. */
Eina_Rectangle geometry(const Evas_Object* widget);
/** Whether all of an area lies in another. */
bool is_inside(const Eina_Rectangle& inner, const Eina_Rectangle& outer);
/** The contrast of the lightest to the darkest pixel in a part of the screen, 1 to 21 (WCAG 2). */
double contrast(const Eina_Rectangle& area);

struct DrawnText {
    std::string text;
    Eina_Rectangle area; /**< of the text itself */
    Evas_Object* widget; /**< the widget that it belongs to */
    bool whole;          /**< neither cut nor shortened with an ellipsis */
};

class Screen {
public:
    explicit Screen(Evas_Object* window) : window_(window) {}
    [[nodiscard]] Evas_Object* window() const { return window_; }

    /** Queues a key press and release, as events of the window's X server, for the main loop's next turn. */
    void type(const char* key) const;
    /** Presses and releases a key and settles, each time. */
    void press(const char* key, int times = 1) const;
    /** Presses and releases the mouse in the middle of an area. */
    void click(const Eina_Rectangle& area) const;

    /** Calls `visitor` with everything visible and the widget that it belongs to, if any, in drawing order. */
    void visit(const std::function<void(Evas_Object* drawn, Evas_Object* widget)>& visitor) const;
    /** The visible texts in drawing order; those of the open popup alone when there is one. */
    [[nodiscard]] std::vector<DrawnText> texts() const;
    [[nodiscard]] std::vector<std::string> seen() const;
    /** The last widget with one of these texts; null when there is none. */
    [[nodiscard]] Evas_Object* find(const std::string& text) const;
    /** The text of the button that has the focus, "[number]" for a spinner, or "". */
    [[nodiscard]] std::string focused() const;
    /** The area of the focus ring; an empty one when none is visible. */
    [[nodiscard]] Eina_Rectangle focus_ring() const;

private:
    Evas_Object* window_;
};

} // namespace test
