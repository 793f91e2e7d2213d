/** One sitting of the operator at the application: every key pressed and what the screen then says is
 * printed. */
#pragma once

#include "common/processes.h"
#include "operator/application.h"
#include "operator/operator.h"

#include <filesystem>
#include <string>
#include <vector>

namespace station {

/** Every step throws NotSeen when the screen, the radio or the application does not follow. */
class Session {
public:
    /**
     * Starts the application; what it logs goes to "application.log" among the pictures.
     *
     * @param pictures the folder of the pictures, made when it is missing.
     */
    Session(const std::string& program, const std::filesystem::path& pictures);

    /** Waits for the first page, and sees from its tabs in which direction it is read. */
    void see_first_page();

    /** Presses a key and waits until the focus is on `name`. */
    void press(const std::string& key, const std::string& name);
    /** Presses Return and waits for the picker of that title, its spinner focused on `value`. */
    void open_picker(const std::string& title, int value);
    /** Presses Return in that picker and waits until it has gone and the focus is on the button that shows
     * `value`. */
    void choose(const std::string& title, int value);
    /** The arrow that leads on in reading order, or back. */
    [[nodiscard]] const char* onward() const { return mirrored_ ? "Left" : "Right"; }
    [[nodiscard]] const char* backward() const { return mirrored_ ? "Right" : "Left"; }

    /** Presses a key several times, until the focused number is `value`. */
    void step(const std::string& key, int times, int value);
    /** Presses a key again and again until the focus is on `name`. */
    void go(const std::string& key, const std::string& name);
    /** Presses a key and waits for `label` with a number behind it. */
    void press_for_number(const std::string& key, const std::string& label);
    /** Leaves the page upwards for a button of the header. */
    void go_to_header(const std::string& name);

    /** Waits for a text. */
    void see(const std::string& text);
    /** Leaves a picture. */
    void page(const std::string& name);
    void expect_focusable(const std::string& name, bool focusable);
    /** The NCP host was asked this since the last time, and nothing else. */
    void expect_asked(const std::string& call);

    /** Ends the application through its exit popup; nothing of the radio stack may be left. */
    void leave();

    /** What has become of the application, in words. */
    std::string application_state();

private:
    /** Presses a key and waits until the focus has moved. */
    const Screen& move(const std::string& key);

    std::filesystem::path pictures_;
    Operator operator_;
    Application application_;
    std::vector<std::string> expected_;
    int pages_ = 0;
    bool mirrored_ = false;
};

/** The TX test: power 7, channel 15, a stream on and off. */
void do_tx_test(Session& session);

/** The RX test: channel 20, a reset and a count. */
void do_rx_test(Session& session);

} // namespace station
