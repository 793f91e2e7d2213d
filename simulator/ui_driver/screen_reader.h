/** Reads the screen over the accessibility bus, like a screen reader, without blocking the main loop. */
#pragma once

#include "base/owned.h"
#include "screen.h"

namespace simulator {

struct Question;

/**
 * The order of the widgets in a snapshot: as in the accessibility tree, or as on the screen. Only a snapshot in screen
 * order contains positions and labels; it takes twice as long.
 */
enum class Order : bool { tree, screen };

/** The first `look` connects to the bus and announces a screen reader to the session. */
class ScreenReader {
public:
    using Seen = std::function<void(const Screen& screen)>;
    /** @param refusal why the widget could not be activated; empty on success. */
    using Activated = std::function<void(const std::string& refusal)>;
    /** @param failure null on success. */
    using Done = std::function<void(const GError* failure)>;

    /** @param answer_limit time-out for each answer; an application that exceeds it counts as too busy. */
    explicit ScreenReader(std::chrono::milliseconds answer_limit);
    /** Cancels pending calls; their callbacks are not called. */
    ~ScreenReader();

    /**
     * Takes a snapshot of the screen, independently of other calls.
     *
     * @param application the application's name on the accessibility bus (its program's name); empty: the first
     *                    application with a window.
     * @param seen        called with the screen, which is empty if the application is missing or too busy to answer.
     */
    void look(const std::string& application, Order order, const Seen& seen);

    /**
     * Presses a widget through its accessible action, like a screen reader. A time-out is not an error: the
     * application may still be performing the action.
     */
    void activate(const Widget& widget, const Activated& activated);

    /** Connects if necessary, and announces a screen reader. Applications check for one when they start. */
    void announce(const Done& done);

private:
    struct Look;
    using Answered = std::function<void(GVariant* answer, const GError* error)>;
    using Opened = std::function<void(BusConnection connection, const GError* error)>;

    void open(const std::string& address, const Opened& opened);
    void call(GDBusConnection* bus, const Question& question, const Answered& answered);
    /** Sends several requests in parallel; `done` gets the first failure. */
    void ask(const std::vector<Question>& questions, const Done& done);
    void ask_applications(const std::shared_ptr<Look>& look);
    void read_items(const std::shared_ptr<Look>& look, std::size_t index);
    void describe(const std::shared_ptr<Look>& look);

    std::chrono::milliseconds answer_limit_;
    Object<GCancellable> cancel_{g_cancellable_new()};
    BusConnection session_;
    BusConnection connection_;
};

} // namespace simulator
