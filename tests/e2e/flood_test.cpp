#include "end_to_end_test.h"
#include "ui_driver/keyboard.h"

namespace {

struct Flood {
    const char* event; /**< its values as GVariant text */
    int times;
    std::size_t starts; /**< of the radio */
};

#ifdef __SANITIZE_ADDRESS__ // which keeps what is freed
constexpr long most_kilobytes = 1'000'000;
#else
constexpr long most_kilobytes = 15'000;
#endif

long resident_kilobytes(int process) {
    return simulator::sum_of("/proc/" + std::to_string(process) + "/status", {"VmRSS:"});
}

} // namespace

class FloodTest : public EndToEndTest {
protected:
    /** Presses a key and returns how many events are handled before its turn, even if it then comes too late to count. */
    long events_before_the_answer() {
        const auto handled = [this] { return log_.count("signal_callback > connection"); };
        const auto answered = [this] { return log_.count("KeyName [Down]") + log_.count("frozen: Down"); };
        const long answered_before = answered();
        const long handled_before = handled();
        simulator::press_key(display_, "Down");
        expect_soon("the key's answer", [&] { return answered() > answered_before; });
        return handled() - handled_before;
    }

    const simulator::Display display_ = simulator::open_display(); // the television's bus is flooded
};

TEST_F(FloodTest, LeavesTimeForKeysAndNoMemoryBehindAndTheRadioInStep) {
    open_test("TX Test", "Set Power");
    expect_asked({"ember_start(0)"});
    const int process = application().number();
    const long before = resident_kilobytes(process);
    for (const auto& flood :
         {Flood{"('ready',)", 1000, 1000}, Flood{R"(('\u202e<b>&amp;\n\u0001',))", 10'000, 0},
          Flood{"([(7, {'ready': <'ready'>})], true)", 10'000, 0}}) {
        SCOPED_TRACE(flood.event);
        send_event(television_, flood.event, flood.times);
        for (int press = 0; press < 5; ++press)
            EXPECT_LT(events_before_the_answer(), flood.times / 3);
        expect_asked(std::vector<std::string>(flood.starts, "ember_start(0)"));
        EXPECT_LT(resident_kilobytes(process) - before, most_kilobytes);
    }
    activate("Start Stream");
    wait_for("Stop Stream");
}
