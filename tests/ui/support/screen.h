/** A window of this process as a person has it: keys, the mouse, what is on the screen and what has the focus.
 */
#pragma once

#include <Elementary.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace test {

/**
 * Readies Elementary with the framework's main loop and keys, once for the whole process. From then on an
 * error that EFL or GLib logs fails the test that runs.
 */
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
    /** Presses and releases the mouse in the middle of a widget or an area. */
    void click(const Evas_Object* widget) const;
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

    /** The buttons and spinners that can take the focus; those of the popup in front when one is open. */
    [[nodiscard]] std::vector<Evas_Object*> usable() const;

    [[nodiscard]] Evas_Object* window() const { return window_; }

private:
    void visit(const std::function<void(Evas_Object* widget, const std::string& seen)>& visitor) const;

    Evas_Object* window_;
};

/** What a widget says, as `Screen::seen` lists it. */
std::string description(Evas_Object* widget);

/** A widget's place on the screen. */
Eina_Rectangle geometry(const Evas_Object* widget);

} // namespace test
