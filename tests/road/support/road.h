/** A person before the television who uses the application; each test is one sitting. */
#pragma once

#include "common/process.h"
#include "common/processes.h"
#include "operator/operator.h"
#include "remote/remote.h"
#include "support/application_log.h"

#include <functional>
#include <gmock/gmock.h>
#include <optional>
#include <string>
#include <vector>

/** Runs the application and ends it again; leaves a healthy television behind. */
class Sitting : public testing::Test {
protected:
    /** Starts the application. */
    void switch_on();
    [[nodiscard]] station::Process& application() { return *application_; }

    /** The television's own objects. */
    [[nodiscard]] static station::Remote television();
    /** What the radio module says of its state, for example "tx" as "mode". */
    [[nodiscard]] static std::string radio(const char* what);
    /** The NCP host says "ncp_event" with this text. */
    static void let_host_emit(const std::string& event);
    /** What the NCP host was asked since the test began. */
    [[nodiscard]] std::vector<std::string> asked() const;
    /** Until the end of the test a method of the NCP host answers like that. */
    void let_host_answer(const std::string& method, const std::string& behaviour);
    /** Waits for something that the screen does not show; a failure when it does not come. */
    static void expect_soon(const std::string& what, const std::function<bool()>& has_come);
    /** Waits for the application's end: status 0, and nothing of the radio stack left but the survivors. */
    void expect_orderly_end(const std::vector<std::string>& survivors = {});

    void SetUp() override;
    void TearDown() override;

    /** While the application still runs after a failure. */
    virtual void take_last_picture() {}
    [[nodiscard]] virtual std::vector<std::string> keys_pressed() const { return {}; }

    ApplicationLog log_;

private:
    static std::vector<std::string> asked_so_far();
    static void change_answer(const std::string& method, const std::string& behaviour);

    std::optional<station::Process> application_;
    std::vector<std::string> changed_methods_;
    std::size_t asked_before_ = 0;
};

/** A sitting with the screen read, in which every step throws `NotSeen` when the screen does not follow. */
class Road : public Sitting {
protected:
    /** Starts the application and waits for its first page. */
    void open_application();
    /** From the first page into the TX or the RX test. */
    void open_tx_test();
    void open_rx_test();

    /** Presses Return and waits until the focus is on `name`. */
    void enter(const std::string& name);
    /** Presses a key as often as it takes until the focus is on `name`. */
    void go(const std::string& key, const std::string& name);
    /** Leaves the page upwards, for a button of the header; returns the keys that it took. */
    std::vector<std::string> go_to_header(const std::string& name);
    /** Opens a picker with Return, whose number is then `first`, and steps to `last`. */
    void open_picker(const std::string& title, int first, int last);
    /** Closes the picker with Return; the button shows the value and has the focus. */
    void choose(const std::string& title, int value);

    /** Presses "Count Received Packets", which has the focus, until a number is shown that is as wanted. */
    long count_until(const std::function<bool(long)>& is_as_wanted);

    /** The NCP host was asked this, and nothing else, since the last time. */
    void expect_asked(const std::vector<std::string>& calls);

    void take_last_picture() override;
    [[nodiscard]] std::vector<std::string> keys_pressed() const override { return operator_.keys_pressed(); }

    station::Operator operator_{"velmora", std::chrono::seconds(15)};

private:
    /** Presses a key and waits until the screen has changed. */
    void move(const std::string& key);
    std::size_t calls_seen_ = 0;
};

constexpr auto channel_picker = "Zigbee TX Channel"; // on both pages
constexpr auto power_picker = "Zigbee TX Power";
