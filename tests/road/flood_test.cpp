#include "ncp_host/contract.h"
#include "support/road.h"
#include "support/television.h"

namespace {

struct Flood {
    const char* event; /**< its values as GVariant text */
    long times;
    std::size_t starts; /**< of the radio */
};

void send(const Flood& flood) {
    using namespace simulator::contract;
    const auto bus = simulator::connect_to_system_bus();
    for (long time = 0; time < flood.times; ++time)
        g_dbus_connection_emit_signal(bus.get(), nullptr, service_path, service_interface, event_signal,
                                      g_variant_new_parsed(flood.event), nullptr);
    g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
}

long resident_kilobytes(int process) {
    return simulator::sum_of("/proc/" + std::to_string(process) + "/status", {"VmRSS:"});
}

} // namespace

class FloodRoad : public Road {
protected:
    /** Presses a key; how many events are handled until the key has its turn, be it too late to count. */
    long events_before_the_answer() {
        const auto handled = [this] { return log_.count("signal_callback > connection"); };
        const auto answered = [this] { return log_.count("KeyName [Down]") + log_.count("frozen: Down"); };
        const long answered_before = answered();
        const long handled_before = handled();
        operator_.press("Down");
        expect_soon("the key's answer", [&] { return answered() > answered_before; });
        return handled() - handled_before;
    }
};

TEST_F(FloodRoad, LeavesTimeForKeysAndNoMemoryBehindAndTheRadioInStep) {
    open_test("TX Test", "Set Power");
    expect_asked({"ember_start(0)"});
    [[maybe_unused]] const long before = resident_kilobytes(application().number());
    for (const auto& flood :
         {Flood{"('ready',)", 1000, 1000}, Flood{R"(('\u202e<b>&amp;\n\u0001',))", 10'000, 0},
          Flood{"([(7, {'ready': <'ready'>})], true)", 10'000, 0}}) {
        SCOPED_TRACE(flood.event);
        send(flood);
        for (int press = 0; press < 5; ++press)
            EXPECT_LT(events_before_the_answer(), flood.times / 3);
        expect_asked(std::vector<std::string>(flood.starts, "ember_start(0)"));
#ifndef __SANITIZE_ADDRESS__ // which keeps what is freed
        EXPECT_LT(resident_kilobytes(application().number()) - before, 15'000);
#endif
    }
    operator_.activate("Start Stream");
    operator_.wait_for("Stop Stream");
}
