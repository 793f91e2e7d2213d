/** A person with a remote control: presses keys, reads the screen, waits, takes pictures. */
#pragma once

#include "base/process.h"
#include "picture.h"
#include "sync_reader.h"
#include "ui_driver/keyboard.h"
#include "ui_driver/screen.h"

#include <chrono>
#include <functional>

namespace simulator {

/**
 * Operates one application. Make the operator before the application starts: making it announces the screen
 * reader without which the application says nothing of its screen.
 *
 * Waiting looks at the screen again and again until it is as wanted, at most as long as the operator's
 * patience, and throws `NotSeen` then.
 */
class Operator {
public:
    /**
     * @param application the application's name on the accessibility bus, that of its program.
     * @throws std::runtime_error without an X display, a session bus or an accessibility bus.
     */
    explicit Operator(std::string application, std::chrono::milliseconds patience = std::chrono::seconds(10));

    /** From now on waiting ends at once, with NotSeen, when this process has ended. The application outlives
     * the operator's waits. */
    void follow(const Process& application) { followed_ = &application; }

    /** Presses a key `times` times; see `press_key`. */
    void press(const std::string& key, int times = 1);

    /** Presses a widget by its accessible action; throws NotSeen when it is not on the screen. */
    void activate(const std::string& name);

    [[nodiscard]] Screen screen() const { return reader_.read(application_); }
    [[nodiscard]] std::optional<Widget> focused() const;

    /** Waits until a text is shown; that screen, until the next wait. */
    const Screen& wait_for(const std::string& text);
    /** Waits until something has the focus; that screen, until the next wait. */
    const Screen& wait_for_focus(const std::string& name);

    /** See `take_picture`. */
    void picture(const std::string& path) const { take_picture(display_, path); }

private:
    const Screen& wait_until(Condition condition);

    std::string application_;
    std::chrono::milliseconds patience_;
    Display display_;
    mutable SyncReader reader_; // which asks anew each time
    const Process* followed_ = nullptr;
    Screen seen_{{}, false}; // the newest look of a wait
};

} // namespace simulator
