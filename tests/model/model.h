/** The application as a graph: a state is what the operator sees and what the radio does. */
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace model {

enum class Page : std::uint8_t { first, tx_start, tx_test, rx_start, rx_test };
enum class Radio : std::uint8_t { unreachable, off, transmitting, streaming, receiving };

/** A picker and the button that opens it. */
struct Picker {
    int lowest = 0;
    int highest = 0;
    int number = lowest;
    std::optional<int> set = {}; /**< the number on the button, if any */
    std::string restart = {};    /**< what a radio start did to the number since the picker closed */

    /** How far the number is from the limits; 2 stands for all longer distances. */
    [[nodiscard]] auto distances() const {
        return std::pair(std::min(number - lowest, 2), std::min(highest - number, 2));
    }
    [[nodiscard]] std::string text_or(const char* text) const { return set ? std::to_string(*set) : text; }
    [[nodiscard]] auto history() const { return std::pair(restart, number > lowest); }
};

/** Widgets are named by their text or, if the text changes, by their purpose; "" means no widget. */
struct State {
    Page page = Page::first;
    std::string start = {};        /**< the start button's text after a press */
    std::string popup = {};        /**< the button that opened the popup */
    std::string focus = "TX Test"; /**< the page's focused widget */
    std::string popup_focus = {};
    Radio radio = Radio::unreachable;
    bool stream_button_stops = false;
    std::string packets = "?"; /**< the packet count on the page */
    Picker power = {0, 20};
    Picker tx_channel = {11, 26};
    Picker rx_channel = {11, 26};
    bool mirrored = false;
    bool behind = false;
    bool exit_popup_made = false;
};

/** Stands for any non-zero packet count. */
inline const std::string some_packets = "N";

/** Buttons in reading order. */
using Row = std::vector<std::string>;
inline const Row header{"TX Test", "RX Test", "Exit"};
inline const std::map<Page, Row> content{
    {Page::first, {}},
    {Page::tx_start, {"start"}},
    {Page::tx_test, {"power", "channel", "stream", "Stop Test"}},
    {Page::rx_start, {"start"}},
    {Page::rx_test, {"Count Received Packets", "Reset Count", "channel", "Stop"}}};
inline const Row exit_popup{"Yes", "Cancel"};
inline bool has(const Row& row, const std::string& widget) { return std::ranges::count(row, widget) > 0; }

inline bool is_tx(const State& state) { return state.page == Page::tx_start || state.page == Page::tx_test; }
inline bool in_picker(const State& state) { return state.popup == "power" || state.popup == "channel"; }
inline const std::string& focus_of(const State& state) {
    return state.popup.empty() ? state.focus : state.popup_focus;
}

/** The picker that a button of the page opens. */
auto& picker_of(auto& state, const std::string& button) {
    return !is_tx(state) ? state.rx_channel : button == "power" ? state.power : state.tx_channel;
}

/** Whether a button is locked: it can neither take the focus nor be used. */
inline bool is_locked(const State& state, const std::string& button) {
    return state.stream_button_stops && state.page == Page::tx_test && has({"power", "channel"}, button);
}

/**
 * Returns the fields that the mask names; all if it is empty. "waits" is whether the start button was pressed. Masks
 * with "waits" need fewer failed starts, which take three seconds each, than masks with "start", the button's text.
 * "picker" is the picker that the focused button opens.
 */
inline auto key(const State& state, const std::string& mask = {}) {
    const auto kept = [&mask](const char* field, const auto& value) {
        return mask.empty() || mask.find(field) != std::string::npos ? std::optional(value) : std::nullopt;
    };
    return std::tuple(
        kept("page", state.page), kept("waits", !state.start.empty()), kept("start", state.start),
        kept("popup", state.popup), kept("focus", focus_of(state)),
        kept("number", in_picker(state) ? picker_of(state, state.popup).distances() : std::pair(0, 0)),
        kept("stream", state.stream_button_stops), kept("mirrored", state.mirrored),
        kept("behind", state.behind), kept("radio", state.radio), kept("texts", state.power.set.has_value()),
        kept("texts", state.tx_channel.set || state.rx_channel.set), kept("packets", state.packets),
        kept("made", state.exit_popup_made), kept("picker", picker_of(state, focus_of(state)).history()),
        kept("pickers",
             std::pair(picker_of(state, "power").history(), picker_of(state, "channel").history())));
}

enum class Act : std::uint8_t {
    press,           /**< press `key`, `times` times */
    hold,            /**< hold `key` down */
    activate,        /**< use the accessible action of the button `key` */
    event,           /**< make the radio service send an event with the values `key` */
    change_language, /**< change to a language with the opposite text direction */
    launch_again,
    cover,           /**< open and close another window, which takes the keyboard */
    restart_service, /**< restart the radio service, which then sends "ready" */
    // These stop the application, with the shutdown reason `key`, and restart it.
    terminate, /**< send SIGTERM */
    close,     /**< ask the window to close */
    destroy    /**< destroy the window as another client */
};

/** What a step's only command gets: the answer that fits the radio's state, a refusal, or no answer. */
enum class Answer : std::uint8_t { normal, refused, lost };

/** How many times each text is logged. */
using Log = std::map<std::string, long>;

/** A possible action or event. */
struct Transition {
    std::string name;
    Act act = Act::press;
    std::string key = {};
    std::string mask = {}; /**< the tour covers each combination of these state fields */
    int cost = 1;          /**< approximate duration in milliseconds */
    std::function<bool(const State&)> can_happen = {};
    int times = 1;
    std::string behaviour =
        "normal"; /**< how the radio service answers; or "is away", or "without PROGRAM" (a radio program) */
    Answer answer = Answer::normal;
    Log log = {};
    std::string packets = some_packets; /**< the count that the page then shows */
};

/** All transitions. */
extern const std::vector<Transition> transitions;

/** Every fault on every command, and unusual events. Each name begins with the normal transition's name and ":". */
std::vector<Transition> faults();

/** The next state, and what happened on the way. */
struct Outcome : State {
    std::vector<std::string> calls; /**< calls to the radio service, in order */
    bool ends = false;              /**< the application exits and is restarted */
    Log log;
};

Outcome follow(const State& from, const Transition& by);

/** Returns a widget's text. */
std::string text_of(const State& state, const std::string& widget);

/** Formats the screen as one line in reading order: focused widgets in brackets, focusable ones followed by *. */
std::string rendering(const State& state);

} // namespace model
