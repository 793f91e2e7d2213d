/** The radio module: a radio connected to the television's serial device through a pseudo-terminal. */
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
    /** @throws std::runtime_error for an invalid option, or if a folder or terminal is not available. */
    explicit RadioModule(const Options& options);
    ~RadioModule() override;

    [[nodiscard]] std::map<std::string, Method> methods() override;

private:
    /** Creates or removes the serial device, a symbolic link; a program that has it open can continue to use it. */
    void set_serial(bool present);
    /**
     * If `held`, keeps the television's end open here, so that the line does not hang up while no program uses it.
     * Otherwise closes that end, so that the line hangs up when the television's programs close theirs.
     */
    void hold_line(bool held);
    void add_traffic(const std::string& text);
    /** @throws Refusal for an invalid channel or rate. */
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
