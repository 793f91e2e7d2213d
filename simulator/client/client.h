/** Calls to a running television, from outside or inside. */
#pragma once

#include "base/owned.h"

#include <stdexcept>
#include <string>
#include <vector>

namespace simulator {

/** The interfaces of the television's objects; interfaces/ describes each. */
inline constexpr auto television = "org.velmora.Simulator.Television";
inline constexpr auto ui = "org.velmora.Simulator.Ui";
inline constexpr auto ncp_host = "org.velmora.Simulator.NcpHost";
inline constexpr auto radio_module = "org.velmora.Simulator.RadioModule";

/** It failed, or did not happen in time; tvctl exits 1. */
struct Failure : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/** A usage error; tvctl exits 2. */
struct WrongUse : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class Client {
public:
    explicit Client(BusConnection bus) : bus_(std::move(bus)) {}

    /**
     * Calls a method, however long it takes; waits for a television that is still starting.
     *
     * @param arguments   a floating tuple, or null for none.
     * @param descriptors handed over with the call; one that is closed is replaced by /dev/null.
     * @return the answer's tuple.
     * @throws Failure with what the television says, WrongUse when it does not know what it was asked for.
     */
    Value call(const char* interface, const char* method, GVariant* arguments = nullptr,
               const std::vector<int>& descriptors = {}) const;

    /** The connection, for calls of another kind. */
    [[nodiscard]] GDBusConnection* bus() const { return bus_.get(); }

private:
    BusConnection bus_;
};

/** The first value of an answer. */
Value first_of(const Value& answer);

} // namespace simulator
