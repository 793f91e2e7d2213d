/** The radio module: a radio behind a pseudo-terminal, whose other end is the television's serial device. */
#pragma once

#include "air.h"
#include "base/bus.h"
#include "base/event_source.h"
#include "base/log.h"
#include "base/options.h"
#include "radio.h"

namespace simulator {

class RadioModule : public Simulation {
public:
    /** @throws std::runtime_error for an option that is wrong, or a folder or terminal that cannot be had. */
    explicit RadioModule(const Options& options);
    ~RadioModule() override;

    [[nodiscard]] std::map<std::string, Method> methods() override;

private:
    /** Makes the serial device appear, as a symbolic link, or disappear; a program that has it open keeps it. */
    void set_serial(bool present);
    /**
     * Holds the television's end open, so that the line does not hang up while nobody uses it, or closes it, so that it
     * hangs up when the television closes it.
     */
    void hold_line(bool held);
    void add_traffic(const std::string& text);
    /** @throws Refusal for no such channel or rate. */
    void set_traffic(int channel, int packets_per_second);
    void join_air(const std::filesystem::path& air);
    void read_line();
    void lose_line();
    void follow_stream();
    void answer(const std::string& line);
    /** A floating a{sv}. */
    [[nodiscard]] GVariant* state() const;

    ComponentLog log_{"radio_module"};
    int speed_;
    Radio radio_;
    FileDescriptor line_;
    FileDescriptor television_end_;
    std::string terminal_path_;
    bool is_present_ = false;
    LineBuffer lines_;
    EventSource reader_;
    EventSource serial_timer_;
    std::filesystem::path air_;
    std::unique_ptr<AirWatch> air_watch_;
    std::unique_ptr<AirStream> air_stream_;
};

} // namespace simulator
