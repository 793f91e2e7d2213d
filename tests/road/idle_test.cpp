#include "support/road.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <thread>

using namespace std::chrono_literals;

namespace {

/** How often the threads of a process have been put to work since they began. */
long context_switches(int process) {
    long switches = 0;
    for (const auto& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(process) + "/task")) {
        std::ifstream file(thread.path() / "status");
        for (std::string line; std::getline(file, line);)
            if (line.find("ctxt_switches:") != std::string::npos)
                switches += std::stol(line.substr(line.find(':') + 1));
    }
    return switches;
}

void wait_until_idle(int process) {
    const auto deadline = std::chrono::steady_clock::now() + 10s;
    for (long before = -1; before != context_switches(process); std::this_thread::sleep_for(500ms)) {
        if (std::chrono::steady_clock::now() >= deadline)
            throw station::NotSeen("the application does not come to rest");
        before = context_switches(process);
    }
}

/** In one of three stretches: a busy machine switches of its own accord now and then, a timer in each. */
void expect_idle(int process) {
    constexpr int stretches = 3;
    long least = std::numeric_limits<long>::max();
    for (int stretch = 0; stretch < stretches && least > 2; ++stretch) {
        wait_until_idle(process);
        const long before = context_switches(process);
        std::this_thread::sleep_for(3s);
        least = std::min(least, context_switches(process) - before);
    }
    EXPECT_LE(least, 2);
}

} // namespace

class IdleRoad : public Road {};

TEST_F(IdleRoad, DoesNothingOnTheTestPage) {
    open_tx_test();
    expect_idle(application().number());
}

/** Nobody reads the screen: no screen reader is there. */
class UnreadRoad : public Sitting {};

TEST_F(UnreadRoad, DoesNothingOnTheTestPage) {
    const station::Display display = station::open_display();
    switch_on();
    const int process = application().number();
    expect_soon("the first page", [this] { return log_.count("> _app_service") == 1; });
    for (const char* const page : {"start page", "test page"}) {
        SCOPED_TRACE(page);
        wait_until_idle(process);
        station::press_key(display, "Return");
    }
    expect_soon("the test", [this] { return asked() == std::vector<std::string>{"ember_start(0)"}; });
    expect_idle(process);
}
