/** Calls to a running television, from outside or inside the sandbox. */
#pragma once

#include "base/owned.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace simulator {

/** The television's D-Bus interfaces, described in interfaces/. */
inline constexpr auto television = "org.velmora.Simulator.Television";
inline constexpr auto ui = "org.velmora.Simulator.Ui";
inline constexpr auto ncp_host = "org.velmora.Simulator.NcpHost";
inline constexpr auto radio_module = "org.velmora.Simulator.RadioModule";

/** A failure or time-out; tvctl exits 1. */
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/** A usage error; tvctl exits 2. */
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Client {
public:
    explicit Client(BusConnection bus) : bus_(std::move(bus)) {}

    /**
     * Calls a method, however long it takes; waits for a television that is still starting.
     *
     * @param arguments   a floating tuple, or null for none.
     * @param descriptors passed with the call; a closed one is replaced by /dev/null.
     * @return the answer's tuple.
     * @throws Failure if the television reports an error, UsageError if a key, component or the like does not exist.
     */
    Value call(const char* interface, const char* method, GVariant* arguments = nullptr,
               const std::vector<int>& descriptors = {}) const;

    /** The connection, for other calls. */
    [[nodiscard]] GDBusConnection* bus() const { return bus_.get(); }

private:
    BusConnection bus_;
};

/** The first value of an answer. */
Value first_of(const Value& answer);

} // namespace simulator
