/** Compares the application with a model of it. */

#include "driver.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <iostream>
#include <random>
#include <set>
#include <thread>

namespace {

using namespace model;

constexpr auto usage = R"(Usage: run tour [PART] | faults [PART] | random STEPS [SEED]
  tour    performs every transition of the model, or those of one of four parts
  faults  triggers every fault of the radio service on every command, or one of two halves of them
  random  performs random transitions
)";

/** The parts of the tour are groups of pages, to run on several televisions. */
void tour(Driver& driver, int part) {
    constexpr std::array part_of_page{4, 3, 1, 4, 2}; // the first, TX start and test, RX start and test
    std::set<Edge> taken;
    std::size_t wanted = 0;
    const auto is_wanted = [&](const State& state, const Transition& by) {
        const bool is_in_part = part == 0 || part == part_of_page.at(static_cast<std::size_t>(state.page));
        return is_in_part && !taken.contains(edge(state, by));
    };
    while (const auto way = nearest(driver.state(), is_wanted))
        for (const Transition& step : *way) {
            wanted += is_wanted(driver.state(), step) ? 1 : 0;
            taken.insert(edge(driver.state(), step));
            driver.take(step);
        }
    std::cout << wanted << " transitions in " << driver.taken().size() << " steps\n";
}

/** Performs each faulty step, and then the same step without the fault. */
void take_faults(Driver& driver, int part) {
    const std::vector<Fault> all = faults();
    const auto half = all.begin() + std::ssize(all) / 2;
    for (auto fault = part == 2 ? half : all.begin(); fault != (part == 1 ? half : all.end()); ++fault) {
        const auto is_there = [&](const State& state, const Transition& by) {
            return by.name == fault->right.name && fault->right.can_happen(state);
        };
        const auto go_there = [&] {
            const Steps way = nearest(driver.state(), is_there).value();
            std::for_each(way.begin(), way.end() - 1, [&](const Transition& step) { driver.take(step); });
        };
        go_there();
        driver.take(fault->wrong);
        if (fault->wrong.behaviour == "dies" || fault->wrong.behaviour == "is away")
            driver.take({.name = "the service restarts", .act = Act::replace});
        go_there();
        driver.take(fault->right);
    }
    std::cout << "faults in " << driver.taken().size() << " steps\n";
}

void take_random_steps(Driver& driver, int steps, int seed) {
    std::mt19937 random(static_cast<unsigned>(seed));
    for (int step = 0; step < steps; ++step) {
        std::vector<double> weights;
        for (const Transition& each : transitions())
            weights.push_back(each.can_happen(driver.state()) ? 1.0 / (30 + each.cost) : 0.0);
        driver.take(
            transitions()[std::discrete_distribution<std::size_t>(weights.begin(), weights.end())(random)]);
    }
    std::cout << steps << " random steps from seed " << seed << "\n";
}

/** Performs steps from a fresh start. Returns the difference from the model; empty if there is none. */
std::string try_out(Driver& driver, const Steps& steps) {
    try {
        driver.begin();
        for (const Transition& step : steps) {
            if (!step.can_happen(driver.state()))
                return {};
            driver.take(step);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(150)); // to notice unexpected changes
        driver.expect({});
        return {};
    } catch (const Difference& difference) {
        return difference.what();
    }
}

/** Tries to reproduce a difference with a shortcut to the last few steps. Returns those steps, or else all. */
Steps shrink(Driver& driver, const Steps& steps) {
    driver.set_limit(std::chrono::seconds(4)); // a start without the relay takes three
    for (std::size_t last = 1; last < steps.size(); last *= 3) {
        const auto rest = steps.end() - static_cast<std::ptrdiff_t>(last);
        State before;
        std::for_each(steps.begin(), rest,
                      [&](const Transition& step) { before = follow(before, step).state; });
        const auto is_there = [&](const State& state, const Transition& by) {
            return by.name == rest->name && key(state) == key(before);
        };
        Steps fewer = nearest(State{}, is_there).value();
        fewer.insert(fewer.end(), rest + 1, steps.end());
        if (const std::string difference = try_out(driver, fewer); !difference.empty()) {
            std::cout << "reproduced with fewer steps:\n" << difference << '\n';
            return driver.taken();
        }
    }
    return steps;
}

void report(Driver& driver, const std::string& difference, bool shrinks) {
    const std::filesystem::path kept = "/var/log/simulator"; // with --logs
    const Steps steps = driver.taken();
    std::cout << "difference after " << steps.size() << " steps:\n" << difference << '\n' << std::flush;
    driver.picture(kept / "last_picture.png");
    // A copy, because shrinking continues the log.
    std::filesystem::copy_file(simulator::ApplicationLog().path(), kept / "difference.log",
                               std::filesystem::copy_options::overwrite_existing);
    for (const Transition& step : shrinks && !steps.empty() ? shrink(driver, steps) : steps)
        std::cout << "  " << step.name << '\n';
    std::cout << "Logs and the last screenshot are in build/logs.\n";
}

/** Returns whether the application matches the model. */
bool agrees(const std::string& what, int first_number, int second_number) {
    Driver driver(VELMORA_PROGRAM);
    try {
        driver.begin();
        if (what == "tour")
            tour(driver, first_number);
        else if (what == "faults")
            take_faults(driver, first_number);
        else
            take_random_steps(driver, first_number, second_number);
        return true;
    } catch (const Difference& difference) {
        report(driver, difference.what(), what != "faults");
        return false;
    }
}

} // namespace

int main(int argc, char** argv) {
    const std::string what = argc > 1 ? argv[1] : "";
    if (what != "tour" && what != "faults" && what != "random") {
        std::cout << usage;
        return what == "--help" ? 0 : 2;
    }
    try {
        return agrees(what, argc > 2 ? std::stoi(argv[2]) : 0, argc > 3 ? std::stoi(argv[3]) : 0) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "model_tests: " << error.what() << '\n';
        return 2;
    }
}
