/** A program that draws a page and is measured from outside. */
#pragma once

#include "base/process.h"
#include "drawing_watch.h"

#include <string>
#include <vector>

namespace bench {

/** Runs until this goes; what it says goes to a file. */
class MeasuredProgram {
public:
    /**
     * Starts the program and waits until its page is drawn.
     *
     * @throws std::runtime_error when it cannot be started or no page is drawn.
     */
    MeasuredProgram(const std::vector<std::string>& command, DrawingWatch& watch);
    /** Ends it and waits until it is gone from the screen. */
    ~MeasuredProgram();
    MeasuredProgram(const MeasuredProgram&) = delete;
    MeasuredProgram& operator=(const MeasuredProgram&) = delete;

    /** From the start of the process to the drawing of the page. */
    [[nodiscard]] std::chrono::duration<double> time_to_page() const { return page_drawn_ - started_; }
    /** The process's share of the memory, in megabytes: what others use too counts in part. */
    [[nodiscard]] double megabytes() const;
    /** The descriptors that it has open. */
    [[nodiscard]] long descriptors() const;
    /** How often its threads have given up the processor so far. */
    [[nodiscard]] long context_switches() const;
    [[nodiscard]] int number() const { return process_.number(); }

private:
    DrawingWatch& watch_;
    Clock::time_point started_ = Clock::now();
    simulator::Process process_;
    Clock::time_point page_drawn_;
};

} // namespace bench
