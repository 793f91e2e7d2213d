/** What the operator of the application sees, as far as it matters, and what the radio does. */
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

namespace walk {

enum class Page : std::uint8_t { first, tx_start, tx_test, rx_start, rx_test };
/** A failed one is one that waited, too: in bits. */
enum class Start : std::uint8_t { fresh = 0b00, waiting = 0b01, failed = 0b11 };
enum class Popup : std::uint8_t { none, exit, power, channel };
enum class Radio : std::uint8_t { unreachable, off, transmitting, streaming, receiving };
enum class Packets : std::uint8_t { unknown, zero, some, reset_failed };

/** What has become of a number that a picker was left at, until that picker is opened. */
enum class Memory : std::uint8_t { none, kept, dropped_by_a_start, kept_by_a_failed_start };

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
    std::optional<int> set;   /**< what the button shows */
    std::optional<int> shown; /**< what the picker shows next; nothing: it will be a new one */
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
    Memory memory = Memory::none;
    Spot remembered = Spot::none; /**< by this button's picker, one of the page's test */
    bool operator==(const State&) const = default;
};

struct Limits {
    int lowest;
    int highest;
};

bool is_tx(const State& state);
bool in_picker(const State& state);

/** Of the picker that is open. */
Number& picked(State& state);
const Number& picked(const State& state);
Limits limits(const State& state);

/** Whether the picker of a button of the page's test will show another number than its lowest. */
bool remembers(const State& state, Spot button);

/** Of the page that is shown. */
const Number& channel_of(const State& state);

/** The buttons of the page, in reading order. */
std::vector<Spot> header();
std::vector<Spot> content(const State& state);

/** Buttons that can be seen or are covered by a popup, barred ones and those of a closed popup included. */
std::vector<Spot> buttons(const State& state);

/** Whether a button can neither take the focus nor be used. */
bool is_barred(const State& state, Spot spot);

/** The parts of a place; a transition counts once for each combination of those that make it another there. */
enum Grain : std::uint64_t {
    page = 0x7,
    start = 0x18,
    waits = 0x8, // no other place when the start has then failed, which takes three seconds
    popup = 0x60,
    focus = 0x780,
    number = 0x3800,
    stream = 0x4000,
    mirrored = 0x8000,
    behind = 0x10000,
    radio = 0xE0000,
    texts = 0x700000,
    packets = 0x1800000,
    made = 0x2000000,
    memory = 0xC000000 | 0x10000000
};

/** The state without what makes no other place of it. */
std::uint64_t place(const State& state);

} // namespace walk
