/** The application as a graph of states and transitions. */
#pragma once

#include "state.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace model {

enum class Act : std::uint8_t {
    press,     /**< press `key`, `times` times */
    hold,      /**< hold `key` down */
    activate,  /**< use the accessible action of the button `key` */
    event,     /**< make the radio service send an event with the values `key` */
    language,  /**< change to a language with the opposite text direction */
    launch,    /**< launch the application a second time */
    interrupt, /**< open and close another window, which takes the keyboard */
    replace,   /**< restart the radio service, which then sends "ready" */
    // These stop the application, with the shutdown reason `key`, and restart it.
    terminate, /**< send SIGTERM */
    close,     /**< ask the window to close */
    destroy    /**< destroy the window as another client */
};

/** What happens to the single command of a step. */
enum class Answer : std::uint8_t {
    normal,  /**< the radio answers as its state requires */
    refused, /**< the command does not reach the radio */
    lost     /**< the radio executes it, but the answer is lost */
};

/** How many times each text is logged. */
using Log = std::map<std::string, long>;

/** A possible action or event. */
struct Transition {
    std::string name;
    Act act = Act::press;
    std::string key = {};
    unsigned mask = 0; /**< state fields whose combinations are covered separately */
    int cost = 1;      /**< approximate duration in milliseconds */
    std::function<bool(const State&)> can_happen = {};
    int times = 1;
    std::string missing = {};         /**< a radio program that is missing */
    std::string behaviour = "normal"; /**< of the radio service for the command; or "is away" */
    Answer answer = Answer::normal;
    Log log = {};
    std::string packets = some_packets; /**< the count that the page then shows */
};

/** All transitions. */
const std::vector<Transition>& transitions();

/** A transition and the masked state in which it starts. */
using Edge = std::pair<std::string, Key>;
inline Edge edge(const State& from, const Transition& by) { return {by.name, key(from, by.mask)}; }

/** The result of a transition. */
struct Outcome {
    State state;
    std::vector<std::string> calls; /**< calls to the radio service, in order */
    bool ends = false;              /**< the application exits and is restarted */
    Log log;
};

Outcome follow(const State& state, const Transition& transition);

using Steps = std::vector<Transition>;
using Condition = std::function<bool(const State&, const Transition&)>;

/**
 * Finds the cheapest path to a wanted step.
 *
 * @param is_wanted called for each transition that can happen in a state.
 * @return the path, including the wanted step; nothing if there is none.
 */
std::optional<Steps> nearest(const State& from, const Condition& is_wanted);

/** A step that fails because of a fault of the radio service. */
struct Fault {
    Transition wrong;
    Transition right; /**< the same step without the fault */
};

/** Every fault on every command, and events with wrong types or unusual texts. */
std::vector<Fault> faults();

/** Returns how much a key changes the number in the open picker. */
int step_of(const State& state, const std::string& key);

/** Returns the text at a spot. */
std::string name_of(const State& state, const Spot& spot);

/** Formats the screen as one line in reading order: focused widgets in brackets, focusable ones followed by *. */
std::string rendering(const State& state);

} // namespace model
