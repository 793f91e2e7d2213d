/** Walks over the application: every transition of the model once, or some at random. */

#include "faults.h"

#include "support/options.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <random>

namespace {

using namespace walk;
using namespace std::chrono_literals;

const std::filesystem::path kept = "/var/log/simulator"; // with --logs

struct Options {
    int steps = 0; /**< 0: the tour */
    int seed = 1;
    int seeds = 1;
    int part = 0; /**< of the tour; 0: all of it */
    gboolean faults = FALSE;
};

/** The tour is divided by pages, so that each television has its own neighbourhood. */
bool is_in_part(const Options& options, const Crossing& crossing) {
    constexpr std::array part_of_page{4, 3, 1, 4, 2}; // the first, TX start and test, RX start and test
    return options.part == 0 || options.part == part_of_page.at(crossing.second & page);
}

int report(Walk& walk, const Difference& first, const Options& options) {
    std::string difference = first.what();
    std::cout << "a difference after " << walk.taken.size() << " steps:\n"
              << difference << '\n'
              << std::flush;
    walk.hand.picture(kept / "last_picture.png");
    std::filesystem::copy_file(Hand::log, kept / "difference.log", // shortening writes on the other
                               std::filesystem::copy_options::overwrite_existing);
    if (options.faults != FALSE)
        return 1;
    const Steps steps = walk.taken.empty() ? Steps{} : shortened(walk, walk.taken, difference);
    std::cout << "the steps:\n";
    for (const std::size_t step : steps)
        std::cout << "  " << transitions()[step].name << '\n';
    std::cout << difference << "\nLogs and the last picture are in build/logs.\n";
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
    while (const auto way = nearest(walk.state, can_happen, is_wanted))
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
    for (int seed = options.seed; seed < options.seed + options.seeds; ++seed) {
        std::mt19937 random(static_cast<unsigned>(seed));
        walk.begin();
        for (int step = 0; step < options.steps; ++step) {
            std::vector<double> weights;
            for (std::size_t i = 0; i < transitions().size(); ++i)
                weights.push_back(can_happen(walk.state, i) ? 1.0 / (30 + transitions()[i].cost) : 0.0);
            walk.take(std::discrete_distribution<std::size_t>(weights.begin(), weights.end())(random));
        }
        std::cout << "seed " << seed << ": " << options.steps << " steps taken\n" << std::flush;
    }
}

int walk_over(const Options& options) {
    Walk walk(VELMORA_PROGRAM);
    try {
        if (options.faults != FALSE)
            std::cout << take_faults(walk, options.part) << " faults made to happen\n";
        else if (options.steps == 0)
            tour(walk, options);
        else
            random_walk(walk, options);
        return 0;
    } catch (const Difference& difference) {
        return report(walk, difference, options);
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    const std::array<GOptionEntry, 6> entries{
        {{"steps", 0, 0, G_OPTION_ARG_INT, &options.steps, "So many at random, instead of all once", "N"},
         {"seed", 0, 0, G_OPTION_ARG_INT, &options.seed, "Of the random steps", "N"},
         {"seeds", 0, 0, G_OPTION_ARG_INT, &options.seeds, "As many walks, each from the next seed", "N"},
         {"part", 0, 0, G_OPTION_ARG_INT, &options.part, "Of four of the tour, or two of the faults", "N"},
         {"faults", 0, 0, G_OPTION_ARG_NONE, &options.faults, "The radio's service goes wrong", nullptr},
         {}}};
    try {
        simulator::read_options(argc, argv, entries.data(), "Walks over Velmora, with a model of it beside.");
        if (options.part < 0 || options.part > (options.faults == FALSE ? 4 : 2))
            throw std::runtime_error("there is no such part");
        return walk_over(options);
    } catch (const std::exception& error) {
        std::cerr << "walk: " << error.what() << "\n";
        return 2;
    }
}
