/** Performs the model's transitions on the simulated television and compares the results. */
#pragma once

#include "model.h"

#include "base/process.h"
#include "support/application_log.h"
#include "support/sync_reader.h"
#include "support/windows.h"

namespace model {

/** Its errors are std::runtime_error. If the application differs from the model, they list the steps that led to it. */
class Driver {
public:
    /** Starts the application. */
    Driver();

    /** Performs a transition in the current state. */
    void take(const Transition& by);

    [[nodiscard]] const State& state() const { return state_; }

private:
    /** Injects the transition's fault. @return how to remove it. */
    std::function<void()> inject(const Transition& by, const std::vector<std::string>& calls);
    void act(const Transition& by);
    [[nodiscard]] std::string look();
    [[nodiscard]] std::vector<std::string> new_calls() const;

    /** Waits for the state, these new calls and these logged texts. @return the difference; empty if there is none. */
    [[nodiscard]] std::string await(const std::vector<std::string>& calls, const Log& texts);
    /** Fails unless `is_met`. */
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
