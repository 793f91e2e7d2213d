/** Reads the screen as a screen reader does, over the accessibility bus. */
#pragma once

#include "accessibility_bus.h"
#include "screen.h"

namespace simulator {

/**
 * Whether a look asks where the widgets are and what labels them: without, it takes half the time, and they come as the
 * application lists them.
 */
enum class Places : bool { unasked, asked };

class ScreenReader {
public:
    using Seen = std::function<void(const Screen& screen)>;
    /** @param refusal why the widget could not be activated; empty: it was. */
    using Activated = std::function<void(const std::string& refusal)>;

    /**
     * @param patience how long the application may take to answer a question; a look ends with the first that
     * is not answered.
     */
    explicit ScreenReader(std::chrono::milliseconds patience) : bus_(patience) {}

    /**
     * Looks at the screen. Nothing is remembered from one look to the next.
     *
     * @param application the name the application has on the accessibility bus, that of its program; empty:
     * the first one there that has a window.
     * @param seen        called from the main loop, with an empty screen when the application is not there or too
     * busy to answer.
     */
    void look(const std::string& application, Places places, const Seen& seen);

    /**
     * Presses a widget through its accessible action, as a screen reader's user does. An application that
     * works longer on it than the bus waits is not an error.
     */
    void activate(const Widget& widget, const Activated& activated);

    /** Announces a screen reader, which an application asks for when it starts; else the first look does. */
    void announce(const AccessibilityBus::Done& done) { bus_.connect(done); }

private:
    struct Look;

    void ask_applications(const std::shared_ptr<Look>& look);
    void read_items(const std::shared_ptr<Look>& look, std::size_t index);
    void describe(const std::shared_ptr<Look>& look);

    AccessibilityBus bus_;
};

} // namespace simulator
