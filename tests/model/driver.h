/** Performs the model's transitions on the simulated television and compares the results. */
#pragma once

#include "model.h"

#include "base/process.h"
#include "support/application_log.h"
#include "support/sync_reader.h"
#include "support/television.h"
#include "support/windows.h"
#include "ui_driver/keyboard.h"

#include <chrono>
#include <stdexcept>

namespace model {

/** The application differs from the model. */
class Difference : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Driver {
public:
    explicit Driver(std::string program);

    /** Restarts the application and resets the television. @throws Difference. */
    void begin();

    /** Performs a transition in the current state. @throws Difference. */
    void take(const Transition& by);

    /**
     * Waits until the screen shows the state, the radio service has received these new calls, and the last step has
     * logged these texts. @throws Difference.
     */
    void expect(const std::vector<std::string>& calls, const Log& texts = {});

    [[nodiscard]] const State& state() const { return state_; }
    /** All steps since the first start of the application. */
    [[nodiscard]] const Steps& taken() const { return taken_; }

    void set_limit(std::chrono::milliseconds limit) { limit_ = limit; }
    void picture(const std::string& path) const { simulator::take_picture(path); }

private:
    void start_application();
    void inject(const Transition& by, const std::vector<std::string>& calls);
    void act(const Transition& by);
    void replace_host();
    [[nodiscard]] std::string look();
    [[nodiscard]] std::vector<std::string> new_calls() const;

    std::string program_;
    simulator::Display display_;
    simulator::SyncReader reader_;
    simulator::OtherWindow other_;
    std::optional<simulator::Process> application_;
    simulator::ApplicationLog log_; /**< since the start of the last step */
    State state_;
    Steps taken_;
    std::map<std::string, simulator::Widget> seen_; /**< buttons by name, as last seen */
    std::size_t calls_seen_ = 0;
    int stalls_ = 0;                       // presses that a busy machine froze the screen for
    std::function<void()> repair_ = [] {}; /**< removes the injected fault */
    std::chrono::milliseconds limit_;
};

} // namespace model
