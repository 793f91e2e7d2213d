/** Calls to the simulated television's own objects on the system bus. */
#pragma once

#include <memory>
#include <string>

struct _GVariant;

namespace station {

/** One object of the simulation. */
struct SimulatedPart {
    const char* bus_name;
    const char* object_path;
    const char* interface;
};

extern const SimulatedPart ncp_host;
extern const SimulatedPart radio_module;

struct UnrefVariant {
    void operator()(_GVariant* value) const;
};
using Answer = std::unique_ptr<_GVariant, UnrefVariant>;

/**
 * Calls a method.
 *
 * @param arguments a tuple, consumed by the call; null for none.
 * @return the answer's tuple.
 * @throws std::runtime_error when the part refuses or does not answer.
 */
Answer call(const SimulatedPart& part, const std::string& method, _GVariant* arguments = nullptr);

} // namespace station
