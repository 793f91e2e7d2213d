/** The application as a graph: what its operator can see, and what each thing that can happen changes of it.
 */
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace walk {

enum class Page : std::uint8_t { first, tx_start, tx_test, rx_start, rx_test };
enum class Start : std::uint8_t { fresh, waiting, failed };
enum class Popup : std::uint8_t { none, exit, power, channel };
enum class Radio : std::uint8_t { unreachable, off, transmitting, streaming, receiving };
enum class Packets : std::uint8_t { unknown, zero, some, reset_failed };

/** Whatever can take the focus. */
enum class Spot : std::uint8_t {
    none,
    tx_tab,
    rx_tab,
    exit,
    start,
    power,
    channel,
    stream,
    stop,
    count,
    reset,
    yes,
    cancel,
    number
};

/** A picker and the button that opens it. */
struct Number {
    std::optional<int> set; /**< what the button shows */
    std::optional<int>
        shown; /**< what the picker shows when it is opened again; nothing: it will be a new one */
    bool operator==(const Number&) const = default;
};

struct State {
    Page page = Page::first;
    Start start = Start::fresh;
    Popup popup = Popup::none;
    Spot focus = Spot::tx_tab;
    Spot below = Spot::none; /**< where the focus goes when the popup closes */
    Radio radio = Radio::unreachable;
    bool stream_button_stops = false;
    Packets packets = Packets::unknown;
    Number power;
    Number tx_channel;
    Number rx_channel;
    bool mirrored = false;
    bool behind = false;
    bool exit_popup_made = false;
    bool operator==(const State&) const = default;
};

/** How the radio's service answers the one command of a step. */
enum class Answer : std::uint8_t { normal, code, error, wrong_signature, late };

enum class Act : std::uint8_t {
    press,     /**< `key`, `times` times */
    hold,      /**< `key` */
    activate,  /**< `spot`, through its accessible action */
    event,     /**< the radio's service says `key` */
    bad_event, /**< the radio's service says "ncp_event" with a wrong signature */
    language,  /**< one of the other direction */
    launch,    /**< a second time */
    terminate, /**< SIGTERM, then start anew */
    close      /**< the window's close request, then start anew */
};

/** What becomes of a start of the radio's programs. */
enum class BringUp : std::uint8_t { ready, silent, no_relay };

/** Something that can happen. */
struct Transition {
    std::string name;
    Act act = Act::press;
    std::string key = {};
    int times = 1;
    Spot spot = Spot::none;
    Answer answer = Answer::normal;
    BringUp bring_up = BringUp::ready;
    std::uint64_t grain = 0; /**< the parts of the place that make it another transition there */
    int cost = 1;            /**< about how long it takes, in milliseconds */
    std::function<bool(const State&)> can_happen = {};
};

/** What a transition leads to. */
struct Outcome {
    State state;
    std::vector<std::string> calls; /**< what the radio's service is asked, in order */
    bool ends = false;              /**< the application ends, and is started anew */
};

/** Everything that can happen. */
const std::vector<Transition>& transitions();

Outcome follow(const State& state, const Transition& transition);

/** The state without what makes no other place of it; a transition counts once for each `place & grain`. */
std::uint64_t place(const State& state);

/** The name of what is there, as it is written on the screen. */
std::string name_of(const State& state, Spot spot);

/** Buttons that can be seen or are covered by a popup, barred ones included. */
std::vector<Spot> buttons(const State& state);

/** One line of all that can be read, in reading order: [focused], and * behind what can take the focus. */
std::string appearance(const State& state);

} // namespace walk
