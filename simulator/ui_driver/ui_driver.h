/** Reads the screen and presses keys for callers on the bus; see interfaces/org.velmora.Simulator.Ui.xml. */
#pragma once

#include "base/bus.h"
#include "base/event_source.h"
#include "keyboard.h"
#include "screen_reader.h"
#include "screenshot.h"

#include <list>

namespace simulator {

/**
 * Never blocks. Takes snapshots of the screen while calls wait; each snapshot serves all calls made before it began.
 */
class UiDriver : public Simulation {
public:
    /** @throws std::runtime_error without a display. */
    explicit UiDriver(GDBusConnection* connection);
    /** Refuses all waiting calls. */
    ~UiDriver() override;

    [[nodiscard]] std::map<std::string, Method> methods() override;

private:
    using Answer = std::function<void(const Call& call, const Screen& screen)>;
    struct Waiting {
        Call call;
        Wait wait;
        Answer answer;
        unsigned after;   /**< the last look that began before the call */
        NameWatch caller; /**< the call is dropped if its caller leaves the bus */
    };
    struct Held {
        Call call;
        std::string key;
        EventSource release;
    };
    struct Picture {
        Call call;
        std::unique_ptr<Screenshot> screenshot;
    };

    void check_display() const;
    void check_key(const std::string& key) const;
    void press(const std::vector<std::string>& keys);
    void hold(const Call& call);
    void activate(const Call& call);
    void take_picture(const Call& call);
    /** Answers once the condition is met, or refuses with NotSeen. */
    void wait_for(const Call& call, const Condition& condition, std::chrono::milliseconds limit,
                  const Answer& answer);
    void look();
    void show(const Screen& screen);
    [[nodiscard]] static bool serve(const Waiting& waiting, const Screen& screen);

    GDBusConnection* connection_;
    Display display_;
    bool is_display_gone_ = false;
    ScreenReader reader_;
    std::list<Waiting> waiting_;
    unsigned looks_ = 0;
    bool is_looking_ = false;
    EventSource next_look_;
    std::list<Held> held_;
    std::list<Picture> pictures_;
};

} // namespace simulator
