/** A window of this process as a person has it: keys, the mouse, what is seen, how, and what has the focus. */
#pragma once

#include <Elementary.h>

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace test {

/** Readies Elementary with the framework's main loop and keys, once for the whole process. */
void start_elementary();

/** Turns the main loop until everything that waits for no time has happened and is drawn. */
void settle();

/** Turns the main loop until the condition holds; false when it does not within the limit. */
bool await(const std::function<bool()>& condition, std::chrono::milliseconds limit = std::chrono::seconds(3));

/** One window's screen and remote control. */
class Screen {
public:
    explicit Screen(Evas_Object* window) : window_(window) {}

    /** Has the main loop's next turn find a key pressed and released, as events of the window's X server. */
    void type(const char* key) const;
    /** Presses and releases a key and settles, each time. */
    void press(const char* key, int times = 1) const;
    /** Presses and releases the mouse in the middle of an area. */
    void click(const Eina_Rectangle& area) const;
    /** Turns the mouse's wheel where the mouse is, towards the user when `notches` is positive. */
    void wheel(int notches) const;

    /**
     * What is on the screen, in drawing order: texts, buttons' texts, "[number]" for a spinner and "popup
     * TITLE" before a popup's parts.
     */
    [[nodiscard]] std::vector<std::string> seen() const;
    /** The widget that is seen as this, the one in front when there are more; null when none is. */
    [[nodiscard]] Evas_Object* find(const std::string& seen) const;
    /** What has the focus, as it is seen; "" when nothing has. */
    [[nodiscard]] std::string focused() const;

    [[nodiscard]] Evas_Object* window() const { return window_; }

private:
    /** The widgets that say something, in drawing order. */
    [[nodiscard]] std::vector<Evas_Object*> widgets() const;

    Evas_Object* window_;
};

/** Called with something visible, and the widget that it is or belongs to, if there is one. */
using Visitor = std::function<void(Evas_Object* object, Evas_Object* widget)>;
/** Visits all that is visible in a window, in drawing order. */
void visit(Evas_Object* window, const Visitor& visitor);

/** A widget's place on the screen. */
Eina_Rectangle geometry(const Evas_Object* widget);

struct DrawnText {
    std::string text;
    Eina_Rectangle place;  /**< what it takes on the screen */
    Eina_Rectangle widget; /**< the widget it belongs to */
    bool whole;            /**< neither cut nor shortened with an ellipsis */
    bool covered;          /**< an open popup lies over its page */
    bool control;          /**< of a button that can be used */
};

/** The texts that can be seen. */
std::vector<DrawnText> drawn_texts(Evas_Object* window);

/** The place of the focus ring; nothing when none can be seen. */
std::optional<Eina_Rectangle> focus_ring(Evas_Object* window);

/** By how much the borders of the pictures that can be seen are scaled: more than 1.0 is blurred. */
std::vector<double> border_scales(Evas_Object* window);

/** The contrast of the lightest to the darkest pixel in a part of the screen, 1 to 21. */
double contrast(const Eina_Rectangle& area);

/** Whether all of an area lies in another. */
bool is_inside(const Eina_Rectangle& inner, const Eina_Rectangle& outer);

} // namespace test
