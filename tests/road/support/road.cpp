#include "support/road.h"

#include "base/wait_until.h"

#include <filesystem>

namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

constexpr auto last_picture = "/var/log/simulator/last_picture.png";

} // namespace

void Road::open_application() {
    std::filesystem::remove(log_.path()); // of an earlier test
    application_.emplace(std::vector<std::string>{VELMORA_PROGRAM}, simulator::written_to(log_.path()));
    operator_.follow(*application_);
    operator_.wait_for_focus("TX Test");
}

void Road::open_test(const std::string& tab, const std::string& first_button) {
    open_application();
    operator_.activate(tab);
    operator_.wait_for_focus("Start " + tab);
    enter(first_button);
}

void Road::enter(const std::string& name) {
    operator_.press("Return");
    operator_.wait_for_focus(name);
}

void Road::TearDown() {
    if (HasFailure()) {
        EXPECT_NO_THROW(operator_.picture(last_picture));
    }
    if (application_ && application_->number() != 0) {
        application_->terminate();
        expect_orderly_end();
    }
    EXPECT_THAT(log_.complaints_of_libraries(), IsEmpty());
    if (HasFailure())
        std::cerr << "The end of the application's log:\n"
                  << log_.end() << "Logs and the last picture are in build/logs.\n";
}

void Road::expect_soon(const std::string& what, const std::function<bool()>& has_come) {
    if (!simulator::wait_until(has_come, busy_machine_limit))
        throw simulator::NotSeen("waited for " + what);
}

void Road::expect_asked(const std::vector<std::string>& calls) {
    std::vector<std::string> asked;
    expect_soon("the NCP host to be asked " + testing::PrintToString(calls), [&] {
        asked = simulator::asked_of_host(simulator::this_television());
        return asked.size() >= calls_seen_ + calls.size();
    });
    asked.erase(asked.begin(), asked.begin() + static_cast<std::ptrdiff_t>(calls_seen_));
    EXPECT_EQ(asked, calls);
    calls_seen_ += asked.size();
}

void Road::expect_orderly_end(const std::vector<std::string>& survivors) {
    EXPECT_EQ(application_->wait_for_end(busy_machine_limit), 0);
    EXPECT_THAT(simulator::running_processes({"cpcd", "socat", "zigbeed"}),
                testing::UnorderedElementsAreArray(survivors));
    // Another launch, or init, collects its ended children when it gets to run.
    expect_soon("the ended children to be collected", [] { return simulator::zombies().empty(); });
}
