/** Walks over the application: every transition of the model once, or some at random. */

#include "hand.h"
#include "route.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <random>

namespace {

using namespace walk;
using namespace std::chrono_literals;

struct Options {
    unsigned steps = 0; /**< 0: the tour */
    unsigned seed = 1;
    unsigned seeds = 1;
    unsigned part = 1;
    unsigned parts = 1;
    bool count = false;
    bool as_it_came = false;
    std::vector<std::string> without;
    std::string program = VELMORA_PROGRAM;
};

/** Where the walk is, and how it came there since the application's first start. */
struct Walk {
    explicit Walk(const std::string& program) : hand(program) {}

    Hand hand;
    State state;
    Steps taken;

    void begin() {
        hand.begin();
        state = State{};
        taken.clear();
    }
    void take(std::size_t transition) {
        taken.push_back(transition);
        hand.take(state, transitions()[transition]);
        state = follow(state, transitions()[transition]).state;
    }
};

/** What is left out makes room for what a known difference hides. */
bool is_left_out(const Options& options, std::size_t transition) {
    return std::ranges::any_of(options.without, [&](const std::string& text) {
        return transitions()[transition].name.find(text) != std::string::npos;
    });
}

/** The tour is divided by pages, so that each television has its own neighbourhood. */
bool is_in_part(const Options& options, const Crossing& crossing) {
    return options.parts == 1 ||
           std::hash<std::uint64_t>{}(crossing.second % 8) % options.parts == options.part - 1;
}

/** What the steps do differently from the model; empty when nothing. */
std::string trial(Walk& walk, const Steps& steps) {
    try {
        walk.hand.be_patient(150ms);
        walk.begin();
        for (const std::size_t step : steps) {
            if (!transitions()[step].can_happen(walk.state))
                return {};
            walk.take(step);
        }
        return {};
    } catch (const Difference& difference) {
        return difference.what();
    }
}

/** The fewest steps that still show a difference. */
Steps shortened(Walk& walk, Steps steps, std::string& difference) {
    const auto deadline = std::chrono::steady_clock::now() + 120s;
    const auto shows = [&](const Steps& fewer) {
        const std::string shown = trial(walk, fewer);
        if (shown.empty())
            return false;
        difference = shown;
        steps.assign(walk.taken.begin(), walk.taken.end());
        return true;
    };
    State before;
    for (std::size_t i = 0; i + 1 < steps.size(); ++i)
        before = follow(before, transitions()[steps[i]]).state;
    const std::size_t last = steps.back();
    const auto direct = nearest(State{}, [&](const State& state, std::size_t transition) {
        return transition == last && place(state) == place(before);
    });
    if (direct && direct->size() < steps.size())
        shows(*direct);
    for (std::size_t length = steps.size() / 2; length > 0; length /= 2)
        for (std::size_t at = 0; at + length < steps.size() && std::chrono::steady_clock::now() < deadline;) {
            Steps fewer = steps;
            const auto first = fewer.begin() + static_cast<std::ptrdiff_t>(at);
            fewer.erase(first, first + static_cast<std::ptrdiff_t>(length));
            if (!shows(fewer))
                at += length;
        }
    return steps;
}

int report(Walk& walk, const Difference& first, const Options& options) {
    std::string difference = first.what();
    std::cout << "a difference after " << walk.taken.size() << " steps:\n"
              << difference << "\n"
              << std::flush;
    walk.hand.picture(VELMORA_WALK_PICTURE);
    const Steps steps =
        options.as_it_came || walk.taken.empty() ? walk.taken : shortened(walk, walk.taken, difference);
    std::cout << "the steps:\n";
    for (const std::size_t step : steps)
        std::cout << "  " << transitions()[step].name << "\n";
    std::cout << difference << "\nA picture is in " << VELMORA_WALK_PICTURE << "\n";
    return 1;
}

void tour(Walk& walk, const Options& options) {
    std::set<Crossing> taken;
    std::size_t steps = 0;
    walk.begin();
    while (const auto way = nearest(walk.state, [&](const State& state, std::size_t transition) {
               const Crossing next = crossing(state, transition);
               return !is_left_out(options, transition) && is_in_part(options, next) && !taken.contains(next);
           }))
        for (const std::size_t step : *way) {
            taken.insert(crossing(walk.state, step));
            walk.take(step);
            ++steps;
        }
    const auto in_part =
        std::ranges::count_if(taken, [&](const Crossing& one) { return is_in_part(options, one); });
    std::cout << in_part << " transitions taken in " << steps << " steps\n";
}

void random_walk(Walk& walk, const Options& options) {
    for (unsigned seed = options.seed; seed < options.seed + options.seeds; ++seed) {
        std::mt19937 random(seed);
        walk.begin();
        for (unsigned step = 0; step < options.steps; ++step) {
            std::vector<double> weights;
            for (const Transition& transition : transitions())
                weights.push_back(transition.can_happen(walk.state) ? 1.0 / (30 + transition.cost) : 0.0);
            walk.take(std::discrete_distribution<std::size_t>(weights.begin(), weights.end())(random));
        }
        std::cout << "seed " << seed << ": " << options.steps << " steps taken\n" << std::flush;
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    CLI::App arguments(
        "Walks over the application inside a simulated television, with a model of it beside.");
    arguments.add_option("--steps", options.steps,
                         "as many steps at random instead of every transition once");
    arguments.add_option("--seed", options.seed, "the seed of the random steps");
    arguments.add_option("--seeds", options.seeds, "as many walks, each from the next seed");
    arguments.add_option("--part", options.part, "take this part of the transitions");
    arguments.add_option("--parts", options.parts, "into how many parts they are divided");
    arguments.add_flag("--as-it-came", options.as_it_came,
                       "do not look for fewer steps that show a difference");
    arguments.add_option("--without", options.without, "leave out the transitions with this in their name");
    arguments.add_option("--program", options.program, "the application, a file named velmora");
    arguments.add_flag("--count", options.count, "only say how many places and transitions there are");
    CLI11_PARSE(arguments, argc, argv);
    if (options.count) {
        const Extent all = extent(State{});
        std::cout << all.places << " places, " << all.crossings.size() << " transitions\n";
        for (unsigned part = 1; part <= options.parts; ++part) {
            options.part = part;
            std::cout << "part " << part << ": "
                      << std::ranges::count_if(all.crossings,
                                               [&](const Crossing& one) { return is_in_part(options, one); })
                      << "\n";
        }
        std::map<std::size_t, int> each;
        for (const Crossing& one : all.crossings)
            ++each[one.first];
        for (const auto& [transition, count] : each)
            std::cout << "  " << count << " " << transitions()[transition].name << "\n";
        return 0;
    }
    Walk walk(options.program);
    try {
        if (options.steps == 0)
            tour(walk, options);
        else
            random_walk(walk, options);
        return 0;
    } catch (const Difference& difference) {
        return report(walk, difference, options);
    } catch (const std::exception& error) {
        std::cerr << "walk: " << error.what() << "\n";
        return 2;
    }
}
