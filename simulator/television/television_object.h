/** The television's object on its system bus: what drives it from outside. */
#pragma once

#include "base/bus.h"
#include "command_runner.h"
#include "television.h"

namespace simulator {

class TelevisionObject {
public:
    /** @param television outlives the service. */
    explicit TelevisionObject(Television& television);
    ~TelevisionObject();
    TelevisionObject(const TelevisionObject&) = delete;
    TelevisionObject& operator=(const TelevisionObject&) = delete;

private:
    /** A floating aa{sv}. */
    [[nodiscard]] GVariant* components() const;
    void kill(const Call& call);
    void start_component(const Call& call);

    Television& television_;
    CommandRunner runner_;
    BusObject object_;
};

} // namespace simulator
