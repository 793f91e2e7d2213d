/** The television's object on its system bus: what drives it from outside. See contract.h. */
#pragma once

#include "common/bus_object.h"
#include "guests.h"
#include "television.h"

namespace station {

class TelevisionService {
public:
    /** @param television outlives the service. */
    TelevisionService(GDBusConnection* connection, Television& television);
    ~TelevisionService();
    TelevisionService(const TelevisionService&) = delete;
    TelevisionService& operator=(const TelevisionService&) = delete;

private:
    void handle_call(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation);
    [[nodiscard]] GVariant* parts() const;
    void kill_program(const std::string& name);
    void start_part(const std::string& name);
    void run_guest(GVariant* arguments, GDBusMethodInvocation* invocation);

    GDBusConnection* connection_;
    Television& television_;
    Guests guests_;
    BusObject object_;
};

} // namespace station
