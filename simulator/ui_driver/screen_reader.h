/** Reads the screen as a screen reader does, over the accessibility bus, without blocking the main loop. */
#pragma once

#include "base/owned.h"
#include "screen.h"

namespace simulator {

struct Question;

/**
 * Whether a look asks where the widgets are and what labels them: without, it takes half the time, and they come as the
 * application lists them.
 */
enum class Places : bool { unasked, asked };

/** Its connection is made, and a screen reader announced to the session, by the first look. */
class ScreenReader {
public:
    using Seen = std::function<void(const Screen& screen)>;
    /** @param refusal why the widget could not be activated; empty: it was. */
    using Activated = std::function<void(const std::string& refusal)>;
    /** @param failure null on success. */
    using Done = std::function<void(const GError* failure)>;

    /** @param patience for the application's answer to one question; the first that is not answered ends a look. */
    explicit ScreenReader(std::chrono::milliseconds patience);
    /** What has not been answered is not called any more. */
    ~ScreenReader();

    /**
     * Looks at the screen. Nothing is remembered from one look to the next.
     *
     * @param application the application's name on the accessibility bus, that of its program; empty: the first one
     *                    there that has a window.
     * @param seen is called with an empty screen if the application is not there or too busy to answer.
     */
    void look(const std::string& application, Places places, const Seen& seen);

    /**
     * Presses a widget through its accessible action, as a screen reader's user does. An application that works on it
     * for longer than the bus waits is not an error.
     */
    void activate(const Widget& widget, const Activated& activated);

    /** Connects unless it is connected, and announces a screen reader, which an application asks for when it starts. */
    void announce(const Done& done);

private:
    struct Look;
    using Answered = std::function<void(GVariant* answer, const GError* error)>;
    using Opened = std::function<void(BusConnection connection, const GError* error)>;

    void open(const std::string& address, const Opened& opened);
    void call(GDBusConnection* bus, const Question& question, const Answered& answered);
    /** Asks several questions at the same time, which takes little longer than one; `done` gets the first failure. */
    void ask(const std::vector<Question>& questions, const Done& done);
    void ask_applications(const std::shared_ptr<Look>& look);
    void read_items(const std::shared_ptr<Look>& look, std::size_t index);
    void describe(const std::shared_ptr<Look>& look);

    std::chrono::milliseconds patience_;
    Object<GCancellable> cancel_{g_cancellable_new()};
    BusConnection session_;
    BusConnection connection_;
};

} // namespace simulator
