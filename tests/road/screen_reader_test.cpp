#include "support/road.h"

/** A person who reads the screen through a screen reader, and uses it through its actions. */
class ScreenReaderRoad : public Road {
protected:
    /** Activates a button by its accessible action and waits until the screen shows `then`. */
    void act(const std::string& name, const std::string& then) {
        operator_.activate(name);
        operator_.wait_for(then);
    }
};

TEST_F(ScreenReaderRoad, AnActionPressesAButtonOnce) {
    open_application();
    act("TX Test", "Start TX Test");
    act("Start TX Test", "Stop Test");
    act("Start Stream", "Stop Stream");
    act("Stop Stream", "Start Stream");
    act("Set Power", power_picker);
    operator_.press("Right");
    choose(power_picker, 1);
    act("Stop Test", "Start TX Test");
    expect_asked({"ember_start(0)", "ember_start_stream()", "ember_stop_stream()", "ember_set_power(1)",
                  "ember_stop()"});
    act("Exit", "Yes");
    operator_.activate("Yes");
    expect_orderly_end();
}
