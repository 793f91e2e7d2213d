/** The radio module: a radio behind a serial line, with a service to look at it and to disturb it. */
#pragma once

#include "air.h"
#include "base/bus.h"
#include "base/event_source.h"
#include "base/log.h"
#include "module_port.h"
#include "radio.h"

#include <filesystem>
#include <memory>

namespace simulator {

class RadioModule {
public:
    /**
     * @param connection the system bus, for the service.
     * @param speed      the serial speed the module's firmware speaks; it is deaf and dumb at any other.
     * @param log        outlives the module.
     */
    RadioModule(GDBusConnection* connection, int speed, const ComponentLog& log);

    void set_serial(bool present);
    /** @throws Refusal for no such channel or rate. */
    void set_traffic(int channel, int packets_per_second);
    /** Shares the air of this folder with other modules. @throws std::system_error. */
    void join_air(const std::filesystem::path& air);

private:
    void read_line();
    void lose_line();
    void follow_stream();
    void answer(const std::string& line);
    /** A floating a{sv}. */
    [[nodiscard]] GVariant* state() const;

    const ComponentLog& log_;
    int speed_;
    Radio radio_;
    ModulePort port_;
    LineBuffer lines_;
    EventSource reader_;
    BusObject object_;
    std::filesystem::path air_;
    std::unique_ptr<AirWatch> air_watch_;
    std::unique_ptr<AirStream> air_stream_;
};

/** The serial speed a firmware speaks: 115200 when its last number is 8 or less, else 921600. */
int speed_of_firmware(int last_number);

} // namespace simulator
