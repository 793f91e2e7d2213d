/** The application as a graph: what can happen, and what each of it changes. */
#pragma once

#include "state.h"

#include <functional>
#include <string>
#include <vector>

namespace walk {

/** What becomes of the one command of a step. */
enum class Answer : std::uint8_t {
    normal,  /**< the radio says */
    refused, /**< the radio does not hear of it */
    late,    /**< as normal, and keys are pressed meanwhile */
    lost     /**< the radio obeys, and its answer is lost */
};

enum class Act : std::uint8_t {
    press,     /**< `key`, `times` times */
    hold,      /**< `key` */
    activate,  /**< `spot`, through its accessible action */
    event,     /**< the radio's service says `key` */
    language,  /**< one of the other direction */
    launch,    /**< a second time */
    interrupt, /**< by another window, which takes the keyboard and closes */
    terminate, /**< SIGTERM, then start anew; so do all from here on */
    close,     /**< the window's close request */
    destroy    /**< the window, by another client */
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
    std::string behaviour = "normal"; /**< of the radio's service meanwhile */
    BringUp bring_up = BringUp::ready;
    std::uint64_t grain = 0; /**< it counts once for each `place & grain` */
    int cost = 1;            /**< about how long it takes, in milliseconds */
    std::function<bool(const State&)> can_happen = {};
};

/** Everything that can happen. */
const std::vector<Transition>& transitions();

/** What a transition leads to. */
struct Outcome {
    State state;
    std::vector<std::string> calls; /**< what the radio's service is asked, in order */
    bool ends = false;              /**< the application ends, and is started anew */
};

Outcome follow(const State& state, const Transition& transition);

/** By how much a key changes the number of the picker that is open. */
int steps(const State& state, const std::string& key);

} // namespace walk
