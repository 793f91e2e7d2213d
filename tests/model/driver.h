/** Performs the model's transitions on the simulated television and compares the results. */
#pragma once

#include "model.h"

#include "base/process.h"
#include "support/application_log.h"
#include "support/sync_reader.h"
#include "support/windows.h"

namespace model {

/** Throws std::runtime_error. If the application differs from the model, the error lists the steps up to there. */
class Driver {
public:
    /** Starts the application. */
    Driver();

    /** Performs a transition in the current state. */
    void take(const Transition& by);

    [[nodiscard]] const State& state() const { return state_; }

private:
    /** Injects the transition's fault. @return a function that removes the fault. */
    std::function<void()> inject(const Transition& by, const std::vector<std::string>& calls);
    void act(const Transition& by);
    [[nodiscard]] std::string look();
    [[nodiscard]] std::vector<std::string> new_calls() const;

    /** Waits for the screen of `state_`, these new calls and these logged texts. @return the difference, if any. */
    [[nodiscard]] std::string await(const std::vector<std::string>& calls, const Log& texts);
    /** Throws an error with the steps and the difference unless `is_met`. */
    void require(bool is_met, const std::string& difference) const;

    simulator::Display display_ = simulator::open_display();
    simulator::SyncReader reader_;
    simulator::OtherWindow other_;
    simulator::ApplicationLog log_; /**< since the start of the last step */
    std::optional<simulator::Process> application_;
    Outcome state_;
    std::vector<std::string> taken_;                /**< the names of the steps */
    std::map<std::string, simulator::Widget> seen_; /**< buttons by name, as last seen */
    std::ptrdiff_t calls_seen_ = 0;
    int stalls_ = 0; /**< presses dropped because the machine was busy */
};

} // namespace model
