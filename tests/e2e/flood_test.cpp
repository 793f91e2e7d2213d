#include "end_to_end_test.h"
#include "ui_driver/keyboard.h"

#ifdef __SANITIZE_ADDRESS__ // AddressSanitizer keeps freed memory
constexpr long max_kilobytes = 1'000'000;
#else
constexpr long max_kilobytes = 25'000;
#endif

class FloodTest : public EndToEndTest {
protected:
    /** Presses a key and returns how many events are handled before the key is handled or dropped as stale. */
    [[nodiscard]] long events_before_a_key() const {
        simulator::ApplicationLog log;
        log.skip();
        simulator::press_key(display_, "Down");
        const auto has = [](const std::string& message, const char* text) {
            return message.find(text) != std::string::npos;
        };
        long events = 0;
        expect_soon("the key to be handled", [&] {
            events = 0;
            for (const std::string& message : log.messages()) {
                if (has(message, "KeyName [Down]") || has(message, "frozen: Down"))
                    return true;
                events += has(message, "signal_callback > connection") ? 1 : 0;
            }
            return false;
        });
        return events;
    }
    [[nodiscard]] long resident_kilobytes() const {
        return simulator::sum_of("/proc/" + std::to_string(application_->id()) + "/status", {"VmRSS:"});
    }

    const simulator::Display display_ = simulator::open_display(); // not through the bus, which is flooded
};

TEST_F(FloodTest, KeysStayResponsiveMemoryIsFreedAndTheRadioStaysUsable) {
    open_test("TX Test", "Set Power");
    const long before = resident_kilobytes();
    for (const auto& [event, times] :
         {std::pair{"('ready',)", 1000}, std::pair{R"(('\u202e<b>&amp;\n\u0001',))", 10'000},
          std::pair{"([(7, {'ready': <'ready'>})], true)", 10'000}}) {
        SCOPED_TRACE(event);
        send_event(television_, event, times);
        for (int press = 0; press < 5; ++press)
            EXPECT_LT(events_before_a_key(), times / 3);
        expect_logged("method = ember_start,", 1 + 1000); // only "ready" starts the radio
        EXPECT_LT(resident_kilobytes() - before, max_kilobytes);
    }
    activate("Start Stream");
    wait_for("Stop Stream");
}
