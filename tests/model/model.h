/** The application as a graph: what can happen, and what each of it changes. */
#pragma once

#include "state.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace model {

enum class Act : std::uint8_t {
    press,     /**< `key`, `times` times */
    hold,      /**< `key` */
    activate,  /**< the button `key`, through its accessible action */
    event,     /**< the radio's service sends an event with the values `key` */
    language,  /**< one of the other direction */
    launch,    /**< a second time */
    interrupt, /**< by another window, which takes the keyboard and closes */
    replace,   /**< the radio's service by another process, which then says "ready" */
    terminate, /**< SIGTERM, then start the application again; so do all from here on, for the reason `key` */
    close,     /**< the window's close request */
    destroy    /**< the window, by another client */
};

/** How the radio answers the one command of a step. */
enum class Answer : std::uint8_t {
    normal,  /**< as its state says */
    refused, /**< the radio does not get it */
    lost     /**< the radio obeys, and its answer is lost */
};

/** How many times texts are on the log. */
using Log = std::map<std::string, long>;

/** Something that can happen. */
struct Transition {
    std::string name;
    Act act = Act::press;
    std::string key = {};
    unsigned mask = 0; /**< of the state's fields: it counts once for each combination of them */
    int cost = 1;      /**< about how long it takes, in milliseconds */
    std::function<bool(const State&)> can_happen = {};
    int times = 1;
    std::string missing = {};         /**< a program of the radio that cannot be started */
    std::string behaviour = "normal"; /**< of the radio's service at the command; or "is away" */
    Answer answer = Answer::normal;
    Log log = {};
    std::string packets = some_packets; /**< how many the page shows after a count */
};

/** Everything that can happen. */
const std::vector<Transition>& transitions();

/** A transition that counts. */
using Edge = std::pair<std::string, Key>;
inline Edge edge(const State& from, const Transition& by) { return {by.name, key(from, by.mask)}; }

/** What a transition leads to. */
struct Outcome {
    State state;
    std::vector<std::string> calls; /**< what the radio's service is asked, in order */
    bool ends = false;              /**< the application ends, and is started again */
    Log log;
};

Outcome follow(const State& state, const Transition& transition);

using Steps = std::vector<Transition>;
using Condition = std::function<bool(const State&, const Transition&)>;

/**
 * Finds the cheapest way to a step that is wanted.
 *
 * @param is_wanted asked of each transition that can happen in a state.
 * @return the way, which ends with that step; nothing when none leads there.
 */
std::optional<Steps> nearest(const State& from, const Condition& is_wanted);

/** A step that goes wrong since the radio's service does. */
struct Fault {
    Transition wrong;
    Transition right; /**< the same step when the service works */
};

/** Every way to go wrong at every command, and events of wrong types and odd texts. */
std::vector<Fault> faults();

/** By how much a key changes the number of the picker that is open. */
int step_of(const State& state, const std::string& key);

/** The text of what is there. */
std::string name_of(const State& state, const Spot& spot);

/** One line of all that can be read, in reading order: [focused], and * behind what can take the focus. */
std::string rendering(const State& state);

} // namespace model
