/** The model's state: what the operator sees, and what the radio does. */
#pragma once

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

namespace model {

enum class Page : std::uint8_t { first, tx_start, tx_test, rx_start, rx_test };
enum class Radio : std::uint8_t { unreachable, off, transmitting, streaming, receiving };

/** Names a focusable widget by its text or, if the text changes, by its purpose; "" for none. */
using Spot = std::string;

/** Whether a restart of the test kept or reset the picker's number; none once the picker is opened again. */
enum class Past : std::uint8_t { none, forgotten, kept };

/** A picker and the button that opens it. */
struct Number {
    int lowest = 0;
    int highest = 0;
    std::optional<int> set = {};   /**< the number on the button */
    std::optional<int> shown = {}; /**< the picker's number; nothing if the picker will be recreated */
    Past past = Past::none;

    [[nodiscard]] bool is_moved() const { return shown.value_or(lowest) > lowest; }
    bool operator==(const Number&) const = default;
};

struct State {
    Page page = Page::first;
    std::string start = {}; /**< the start button's text after a press */
    Spot popup = {};        /**< the button that opened it */
    Spot focus = "TX Test";
    Spot below = {}; /**< gets the focus when the popup closes */
    Radio radio = Radio::unreachable;
    bool stream_button_stops = false;
    std::string packets = "?"; /**< the packet count on the page */
    Number power = {0, 20};
    Number tx_channel = {11, 26};
    Number rx_channel = {11, 26};
    bool mirrored = false;
    bool behind = false;
    bool exit_popup_made = false;
    bool operator==(const State&) const = default;
};

/** Stands for any non-zero packet count. */
inline const std::string some_packets = "N";

inline bool is_tx(const State& state) { return state.page == Page::tx_start || state.page == Page::tx_test; }
inline bool in_picker(const State& state) { return state.popup == "power" || state.popup == "channel"; }

/** The number that a button of the page's test sets. */
auto& number_of(auto& state, const Spot& button) {
    return !is_tx(state) ? state.rx_channel : button == "power" ? state.power : state.tx_channel;
}

/** The buttons, in reading order. */
using Row = std::vector<Spot>;
inline const Row header{"TX Test", "RX Test", "Exit"};
inline const std::map<Page, Row> content{{Page::first, {}},
                                         {Page::tx_start, {"start"}},
                                         {Page::tx_test, {"power", "channel", "stream", "stop"}},
                                         {Page::rx_start, {"start"}},
                                         {Page::rx_test, {"count", "reset", "channel", "stop"}}};
inline const Row exit_popup{"Yes", "Cancel"};
inline bool has(const Row& row, const Spot& spot) { return std::ranges::find(row, spot) != row.end(); }

/** Whether a button is locked: it can neither take the focus nor be used. */
inline bool is_locked(const State& state, const Spot& spot) {
    return state.stream_button_stops && state.page == Page::tx_test && (spot == "power" || spot == "channel");
}

/** Bits of a state mask. */
enum Field : std::uint16_t {
    page = 0x1,
    waits = 0x2, // the start button was pressed, with any result: a failed start takes three seconds
    start = 0x4,
    popup = 0x8,
    focus = 0x10,
    number = 0x20,
    stream = 0x40,
    mirrored = 0x80,
    behind = 0x100,
    radio = 0x200,
    texts = 0x400,
    packets = 0x800,
    made = 0x1000,
    memory = 0x2000, // `past` of the focused button's picker
    memories = 0x4000
};

/** Returns the state's fields in the mask; all others are empty. */
inline auto key(const State& state, unsigned mask = ~0U) {
    const auto kept = [mask](Field field, const auto& value) {
        return (mask & field) != 0 ? std::optional(value) : std::nullopt;
    };
    const auto memory_of = [&state](const Spot& button) {
        const Number& number = number_of(state, button);
        return std::pair(number.past, number.is_moved());
    };
    return std::tuple(kept(page, state.page), kept(waits, !state.start.empty()), kept(start, state.start),
                      kept(popup, state.popup), kept(focus, state.focus),
                      kept(number, in_picker(state) ? number_of(state, state.popup).shown : std::nullopt),
                      kept(stream, state.stream_button_stops), kept(mirrored, state.mirrored),
                      kept(behind, state.behind), kept(radio, state.radio),
                      kept(texts, state.power.set.has_value()),
                      kept(texts, state.tx_channel.set || state.rx_channel.set), kept(packets, state.packets),
                      kept(made, state.exit_popup_made), kept(memory, memory_of(state.focus)),
                      kept(memories, std::pair(memory_of("power"), memory_of("channel"))));
}
using Key = decltype(key(State{}));

} // namespace model
