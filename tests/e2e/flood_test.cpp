#include "end_to_end_test.h"
#include "ui_driver/keyboard.h"

namespace {

struct Flood {
    const char* event; /**< the event's values as GVariant text */
    int times;
    std::size_t starts; /**< how often the radio is started */
};

#ifdef __SANITIZE_ADDRESS__ // AddressSanitizer keeps freed memory
constexpr long max_kilobytes = 1'000'000;
#else
constexpr long max_kilobytes = 15'000;
#endif

} // namespace

class FloodTest : public EndToEndTest {
protected:
    /** Presses a key and returns how many events are handled before it, even if it is dropped as stale. */
    long events_before_a_key() {
        const auto handled = [this] { return log_.count("signal_callback > connection"); };
        const auto answered = [this] { return log_.count("KeyName [Down]") + log_.count("frozen: Down"); };
        const long answered_before = answered();
        const long handled_before = handled();
        simulator::press_key(display_, "Down");
        expect_soon("the key to be handled", [&] { return answered() > answered_before; });
        return handled() - handled_before;
    }
    [[nodiscard]] long resident_kilobytes() const {
        return simulator::sum_of("/proc/" + std::to_string(application_->number()) + "/status", {"VmRSS:"});
    }

    const simulator::Display display_ = simulator::open_display(); // not through the bus, which is flooded
};

TEST_F(FloodTest, KeysStayResponsiveMemoryIsFreedAndTheRadioStaysInStep) {
    open_test("TX Test", "Set Power");
    expect_calls({"ember_start(0)"});
    const long before = resident_kilobytes();
    for (const auto& flood :
         {Flood{"('ready',)", 1000, 1000}, Flood{R"(('\u202e<b>&amp;\n\u0001',))", 10'000, 0},
          Flood{"([(7, {'ready': <'ready'>})], true)", 10'000, 0}}) {
        SCOPED_TRACE(flood.event);
        send_event(television_, flood.event, flood.times);
        for (int press = 0; press < 5; ++press)
            EXPECT_LT(events_before_a_key(), flood.times / 3);
        expect_calls(std::vector<std::string>(flood.starts, "ember_start(0)"));
        EXPECT_LT(resident_kilobytes() - before, max_kilobytes);
    }
    activate("Start Stream");
    wait_for("Stop Stream");
}
