#include "end_to_end_test.h"

#include "base/strings.h"
#include "base/wait_until.h"

using simulator::ui;

void EndToEndTest::open_application() {
    application_.emplace(std::vector<std::string>{VELMORA_PROGRAM}, simulator::written_to(log_.path()));
    wait_for_focus("TX Test");
}

void EndToEndTest::open_test(const std::string& tab, const std::string& first_button) {
    open_application();
    activate(tab);
    wait_for_focus("Start " + tab);
    enter(first_button);
}

void EndToEndTest::press(const char* key) const {
    television_.call(ui, "Press", g_variant_new_parsed("([%s],)", key));
}

void EndToEndTest::activate(const std::string& name) const {
    wait_for(name);
    television_.call(ui, "Activate", g_variant_new("(s)", name.c_str()));
}

void EndToEndTest::enter(const std::string& name) const {
    press("Return");
    wait_for_focus(name);
}

void EndToEndTest::wait(const char* method, const std::string& name) const {
    constexpr std::chrono::milliseconds limit = busy_machine_limit;
    television_.call(ui, method, g_variant_new("(su)", name.c_str(), static_cast<guint32>(limit.count())));
}

bool EndToEndTest::shows(const std::string& text) const {
    const std::string screen = simulator::printed(first_of(television_.call(ui, "See")).get());
    return screen.find(text) != std::string::npos;
}

void EndToEndTest::TearDown() {
    if (HasFailure()) {
        EXPECT_NO_THROW(simulator::take_picture("/var/log/simulator/last_picture.png"));
    }
    if (application_ && application_->number() != 0) {
        application_->terminate();
        expect_clean_exit();
    }
    EXPECT_THAT(log_.library_warnings(), testing::IsEmpty());
    if (HasFailure())
        std::cerr << "Logs and the last screenshot are in build/logs.\n";
}

void EndToEndTest::expect_soon(const std::string& what, const std::function<bool()>& condition) {
    if (!simulator::wait_until(condition, busy_machine_limit))
        throw simulator::Failure("waited for " + what);
}

void EndToEndTest::expect_calls(const std::vector<std::string>& calls) {
    std::vector<std::string> received = simulator::host_calls(television_);
    while (received.size() < calls_seen_ + calls.size()) { // for as long as there is progress
        const std::size_t before = received.size();
        expect_soon("NCP host calls " + testing::PrintToString(calls), [&] {
            received = simulator::host_calls(television_);
            return received.size() > before;
        });
    }
    received.erase(received.begin(), received.begin() + static_cast<std::ptrdiff_t>(calls_seen_));
    EXPECT_EQ(received, calls);
    calls_seen_ += received.size();
}

void EndToEndTest::expect_clean_exit(const std::vector<std::string>& survivors) {
    EXPECT_EQ(application_->wait_for_end(busy_machine_limit), 0);
    EXPECT_THAT(simulator::running_radio_programs(), testing::UnorderedElementsAreArray(survivors));
    // A later launch or init reaps the exited children asynchronously.
    expect_soon("all zombies to be reaped", [] { return simulator::zombies().empty(); });
}
