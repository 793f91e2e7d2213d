/** Walks over the application: every transition of the model once, or some at random. */

#include "hand.h"
#include "route.h"

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <random>
#include <rapidcheck/shrink/Shrink.h>

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

    [[nodiscard]] std::string name() const {
        return steps > 0 ? "walk-random-" + std::to_string(seed) : "walk-tour-" + std::to_string(part);
    }
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
Choice allowed(const Options& options) {
    return [&options](const State& state, std::size_t index) {
        const Transition& transition = transitions()[index];
        return transition.can_happen(state) &&
               std::ranges::none_of(options.without, [&transition](const std::string& text) {
                   return transition.name.find(text) != std::string::npos;
               });
    };
}

/** The tour is divided by pages, so that each television has its own neighbourhood: the tests, and the rest. */
bool is_in_part(const Options& options, const Crossing& crossing) {
    const auto where = static_cast<Page>(crossing.second & page);
    const bool in_test = where == Page::tx_test || where == Page::rx_test;
    return options.parts == 1 || in_test == (options.part == 1);
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

/** What came after the application's last start, in the writing direction it then had. */
Steps last_life(const Steps& steps, const Choice& may) {
    State state;
    bool mirrored = false;
    auto begin = steps.begin();
    for (auto step = steps.begin(); step + 1 < steps.end(); ++step) {
        const Outcome outcome = follow(state, transitions()[*step]);
        state = outcome.state;
        if (outcome.ends) {
            begin = step + 1;
            mirrored = state.mirrored;
        }
    }
    const auto turns = [](const State&, std::size_t transition) {
        return transitions()[transition].act == Act::language;
    };
    Steps life = mirrored ? nearest(State{}, may, turns).value_or(Steps{}) : Steps{};
    life.insert(life.end(), begin, steps.end());
    return life;
}

/** The nearest way to where the last of the steps begins, as far as it matters, and that step. */
Steps direct_way(const Steps& steps, const Choice& may, std::uint64_t what_matters) {
    State before;
    for (std::size_t i = 0; i + 1 < steps.size(); ++i)
        before = follow(before, transitions()[steps[i]]).state;
    return nearest(State{}, may,
                   [&](const State& state, std::size_t transition) {
                       return transition == steps.back() &&
                              ((place(state) ^ place(before)) & what_matters) == 0;
                   })
        .value_or(steps);
}

/** The fewest steps that still show a difference. */
Steps shortened(Walk& walk, Steps steps, const Choice& may, std::string& difference) {
    const auto deadline = std::chrono::steady_clock::now() + 120s;
    const auto shows = [&](const Steps& fewer) {
        const std::string shown = trial(walk, fewer);
        if (shown.empty())
            return false;
        difference = shown;
        steps.assign(walk.taken.begin(), walk.taken.end());
        return true;
    };
    const std::uint64_t grain = transitions()[steps.back()].grain;
    if (!shows(direct_way(steps, may, grain)) && !shows(direct_way(steps, may, ~std::uint64_t{0})))
        (void)shows(last_life(steps, may));
    auto attempts = rc::shrink::removeChunks(steps);
    for (auto fewer = attempts.next(); fewer && std::chrono::steady_clock::now() < deadline;
         fewer = attempts.next())
        if (shows(*fewer))
            attempts = rc::shrink::removeChunks(steps);
    return steps;
}

/** The logs and the screen at the moment of the difference. */
std::filesystem::path keep_evidence(const Walk& walk, const Options& options) {
    namespace fs = std::filesystem;
    fs::path folder = fs::path(VELMORA_EVIDENCE) / options.name();
    std::error_code not_there;
    fs::remove_all(folder, not_there);
    fs::create_directories(folder);
    fs::copy("/var/log/station", folder, not_there);
    fs::copy(Hand::log, folder, not_there);
    walk.hand.picture(folder / "last_picture.png");
    return folder;
}

int report(Walk& walk, const Difference& first, const Options& options) {
    std::string difference = first.what();
    std::cout << "a difference after " << walk.taken.size() << " steps:\n"
              << difference << '\n'
              << std::flush;
    const auto kept = keep_evidence(walk, options);
    const Steps steps = options.as_it_came || walk.taken.empty()
                            ? walk.taken
                            : shortened(walk, walk.taken, allowed(options), difference);
    std::ofstream file(kept / "steps");
    for (std::ostream* const stream : std::initializer_list<std::ostream*>{&std::cout, &file}) {
        *stream << "the steps:\n";
        for (const std::size_t step : steps)
            *stream << "  " << transitions()[step].name << '\n';
        *stream << difference << '\n';
    }
    std::cout << "Logs and a picture are in " << kept.string() << '\n';
    return 1;
}

void tour(Walk& walk, const Options& options) {
    std::set<Crossing> taken;
    std::size_t steps = 0;
    walk.begin();
    const Choice is_wanted = [&](const State& state, std::size_t transition) {
        const Crossing next = crossing(state, transition);
        return is_in_part(options, next) && !taken.contains(next);
    };
    while (const auto way = nearest(walk.state, allowed(options), is_wanted))
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
    const Choice may = allowed(options);
    for (unsigned seed = options.seed; seed < options.seed + options.seeds; ++seed) {
        std::mt19937 random(seed);
        walk.begin();
        for (unsigned step = 0; step < options.steps; ++step) {
            std::vector<double> weights;
            for (std::size_t i = 0; i < transitions().size(); ++i)
                weights.push_back(may(walk.state, i) ? 1.0 / (30 + transitions()[i].cost) : 0.0);
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
