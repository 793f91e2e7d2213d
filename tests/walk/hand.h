/** Does on the simulated television what the model's transitions say, and sees what comes of it. */
#pragma once

#include "appearance.h"
#include "model.h"

#include "base/process.h"
#include "support/application_log.h"
#include "support/sync_reader.h"
#include "support/television.h"
#include "support/windows.h"
#include "ui_driver/keyboard.h"

#include <chrono>
#include <map>
#include <optional>
#include <stdexcept>

namespace walk {

/** The program does otherwise than the model. */
class Difference : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

class Hand {
public:
    /** What the application writes. */
    static constexpr auto log = "/var/log/simulator/application.log";

    explicit Hand(std::string program);

    /** Starts the application anew on a television like a new one. @throws Difference. */
    void begin();

    /** Takes a transition from a state. @throws Difference. */
    void take(const State& from, const Transition& transition);

    /** Does what a transition from a state says, and no more. */
    void act(const State& from, const Transition& transition);

    /**
     * Waits until the screen shows a state and the radio's service was asked these calls since the last time.
     *
     * @param calls   nothing: the service cannot be asked.
     * @param packets what the page says that were received.
     * @throws Difference.
     */
    void expect(const State& state, const std::optional<std::vector<std::string>>& calls,
                const std::string& packets = some_packets);

    /** The radio's service has been asked nothing yet, since it is another process. */
    void expect_new_host() { calls_seen_ = 0; }

    /** From now on a step waits this long for what must not come. */
    void be_patient(std::chrono::milliseconds time) { afterwards_ = time; }

    void picture(const std::string& path) const { simulator::take_picture(path); }

private:
    void start_application();
    void expect_end(const simulator::LogFromNow& said, Act act);
    void activate(const std::string& name);
    static void set_language(bool mirrored);
    [[nodiscard]] std::string look();
    [[nodiscard]] bool stays(bool mirrored);
    [[nodiscard]] std::vector<std::string> new_calls() const;

    std::string program_;
    simulator::Display display_;
    simulator::SyncReader reader_;
    simulator::OtherWindow other_;
    std::optional<simulator::Process> application_;
    std::map<std::string, simulator::Widget> seen_; /**< buttons by name, where they were seen last */
    std::vector<std::string> shown_;                /**< by the last look */
    std::size_t calls_seen_ = 0;
    std::chrono::milliseconds afterwards_{0};
};

} // namespace walk
