/** Compares the application with a model of it: takes every transition once, or some at random. */

#include "faults.h"
#include "shrink.h"

#include "support/options.h"

#include <array>
#include <filesystem>
#include <iostream>
#include <random>
#include <set>

namespace {

using namespace model;

struct Options {
    int steps = 0; /**< 0: the tour */
    int seed = 1;
    int seeds = 1;
    int part = 0; /**< of the tour; 0: all of it */
    gboolean faults = FALSE;
};

int report(Driver& driver, std::string difference, const Options& options) {
    const std::filesystem::path kept = "/var/log/simulator"; // with --logs
    Steps steps = driver.taken();
    std::cout << "a difference after " << steps.size() << " steps, at "
              << (steps.empty() ? "the start" : steps.back().name) << ":\n"
              << difference << '\n'
              << std::flush;
    driver.picture(kept / "last_picture.png");
    std::filesystem::copy_file(simulator::ApplicationLog().path(),
                               kept / "difference.log", // shrinking writes on the other
                               std::filesystem::copy_options::overwrite_existing);
    if (options.faults == FALSE && !steps.empty()) {
        steps = shrink(driver, steps, difference);
        std::cout << "the steps:\n";
        for (const Transition& step : steps)
            std::cout << "  " << step.name << '\n';
        std::cout << difference << "\nLogs and the last picture are in build/logs.\n";
    }
    return 1;
}

/** The tour is divided by pages, so that each television has its own neighbourhood. */
void tour(Driver& driver, int part) {
    constexpr std::array part_of_page{4, 3, 1, 4, 2}; // the first, TX start and test, RX start and test
    std::set<Edge> taken;
    std::size_t wanted = 0;
    const auto is_wanted = [&](const State& state, const Transition& by) {
        const bool is_in_part = part == 0 || part == part_of_page.at(static_cast<std::size_t>(state.page));
        return is_in_part && !taken.contains(edge(state, by));
    };
    driver.begin();
    while (const auto way = nearest(driver.state(), is_wanted))
        for (const Transition& step : *way) {
            wanted += is_wanted(driver.state(), step) ? 1 : 0;
            taken.insert(edge(driver.state(), step));
            driver.take(step);
        }
    std::cout << wanted << " transitions taken in " << driver.taken().size() << " steps\n";
}

void take_random_steps(Driver& driver, const Options& options) {
    for (int seed = options.seed; seed < options.seed + options.seeds; ++seed) {
        std::mt19937 random(static_cast<unsigned>(seed));
        driver.begin();
        for (int step = 0; step < options.steps; ++step) {
            std::vector<double> weights;
            for (const Transition& each : transitions())
                weights.push_back(each.can_happen(driver.state()) ? 1.0 / (30 + each.cost) : 0.0);
            driver.take(transitions()[std::discrete_distribution<std::size_t>(weights.begin(),
                                                                              weights.end())(random)]);
        }
        std::cout << "seed " << seed << ": " << options.steps << " steps taken\n" << std::flush;
    }
}

int compare(const Options& options) {
    Driver driver(VELMORA_PROGRAM);
    try {
        if (options.faults != FALSE)
            std::cout << take_faults(driver, options.part) << " faults injected\n";
        else if (options.steps == 0)
            tour(driver, options.part);
        else
            take_random_steps(driver, options);
        return 0;
    } catch (const Difference& difference) {
        return report(driver, difference.what(), options);
    }
}

} // namespace

int main(int argc, char** argv) {
    Options options;
    const std::array<GOptionEntry, 6> entries{
        {{"steps", 0, 0, G_OPTION_ARG_INT, &options.steps, "Take N random steps instead of every transition",
          "N"},
         {"seed", 0, 0, G_OPTION_ARG_INT, &options.seed, "Seed of the random steps", "N"},
         {"seeds", 0, 0, G_OPTION_ARG_INT, &options.seeds,
          "Take the random steps for N seeds, beginning with that", "N"},
         {"part", 0, 0, G_OPTION_ARG_INT, &options.part,
          "Take part N of the transitions (1 to 4) or faults (1, 2)", "N"},
         {"faults", 0, 0, G_OPTION_ARG_NONE, &options.faults, "Inject every fault of the radio's service",
          nullptr},
         {}}};
    try {
        simulator::read_options(argc, argv, entries.data(), "Compares Velmora with a model of it.");
        if (options.part < 0 || options.part > (options.faults == FALSE ? 4 : 2))
            throw std::runtime_error("there is no such part");
        return compare(options);
    } catch (const std::exception& error) {
        std::cerr << "model: " << error.what() << "\n";
        return 2;
    }
}
