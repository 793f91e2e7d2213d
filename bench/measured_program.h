/** A program under measurement that draws a page. */
#pragma once

#include "base/process.h"
#include "damage_monitor.h"

namespace bench {

/** Runs a program for as long as the object exists; the program's output goes to a file. */
class MeasuredProgram {
public:
    /** Starts the program and waits until its page is drawn. @throws std::runtime_error if either fails. */
    explicit MeasuredProgram(const std::vector<std::string>& command);
    /** Stops it and waits until it has disappeared from the screen. */
    ~MeasuredProgram();
    MeasuredProgram(const MeasuredProgram&) = delete;
    MeasuredProgram& operator=(const MeasuredProgram&) = delete;

    [[nodiscard]] DamageMonitor& screen() { return screen_; }
    /** The time from the start of the process to the drawing of the page. */
    [[nodiscard]] std::chrono::duration<double> time_to_page() const { return page_drawn_ - started_; }
    /** The resident memory (Rss), in megabytes. */
    [[nodiscard]] double megabytes() const;
    [[nodiscard]] long open_descriptors() const;

private:
    [[nodiscard]] std::string proc(const char* file) const;

    DamageMonitor screen_;
    Clock::time_point started_ = Clock::now();
    simulator::Process process_;
    Clock::time_point page_drawn_;
};

} // namespace bench
