/** Takes the transitions of the model on the simulated television, and compares the results. */
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

/** The program does otherwise than the model. */
class Difference : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Driver {
public:
    explicit Driver(std::string program);

    /** Starts the application again, on a television like a new one. @throws Difference. */
    void begin();

    /** Takes a transition from the state that the application is in. @throws Difference. */
    void take(const Transition& by);

    /**
     * Waits until the screen shows the state, the radio's service was asked these calls since the last time, and the
     * log has these texts since the last step. @throws Difference.
     */
    void expect(const std::vector<std::string>& calls, const Log& texts = {});

    [[nodiscard]] const State& state() const { return state_; }
    /** Since the application's first start. */
    [[nodiscard]] const Steps& taken() const { return taken_; }

    void set_patience(std::chrono::milliseconds patience) { patience_ = patience; }
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
    simulator::LogFromNow log_; /**< since the last step began */
    State state_;
    Steps taken_;
    std::map<std::string, simulator::Widget> seen_; /**< buttons by name, where they were seen last */
    std::size_t calls_seen_ = 0;
    std::function<void()> repair_ = [] {}; /**< ends the injected fault */
    std::chrono::milliseconds patience_;
};

} // namespace model
