/** Buses: connections, names, and objects made of a contract and a table of methods. */
#pragma once

#include "owned.h"

#include <chrono>
#include <functional>
#include <initializer_list>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

namespace simulator {

constexpr auto message_bus = static_cast<GDBusConnectionFlags>(
    G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT | G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);

/** A connection of its own, whose end does not end the process. @throws std::runtime_error. */
BusConnection connect_to_bus(const std::string& address);

/** Takes a name on the bus. @throws std::runtime_error when it cannot be had. */
void own_name(GDBusConnection* connection, const char* name);

/** What interfaces/INTERFACE.xml says: the path of the object and its one interface. */
const GDBusNodeInfo& contract_of(const std::string& interface);

/** A call that is refused. On the bus the error is called "org.velmora.Simulator.Error." and this name. */
class Refusal : public std::runtime_error {
public:
    Refusal(const std::string& name, const std::string& message)
        : std::runtime_error(message), name_("org.velmora.Simulator.Error." + name) {}
    [[nodiscard]] const std::string& name() const { return name_; }

private:
    std::string name_;
};

/** A call of a method. Copies are the same call; it is never answered when the last goes unanswered. */
class Call {
public:
    /** Takes the invocation over. */
    explicit Call(GDBusMethodInvocation* invocation);

    [[nodiscard]] std::string method() const;
    [[nodiscard]] std::string sender() const;
    [[nodiscard]] Value argument(gsize index = 0) const;
    [[nodiscard]] std::string text(gsize index = 0) const;
    [[nodiscard]] std::vector<std::string> texts(gsize index = 0) const;
    [[nodiscard]] int number(gsize index = 0) const;
    [[nodiscard]] bool flag(gsize index = 0) const;
    [[nodiscard]] std::chrono::milliseconds milliseconds(gsize index = 0) const;
    /** A descriptor that was handed over with the call, the caller's to close; -1 when there is none. */
    [[nodiscard]] int take_descriptor(int index) const;

    /** @param values floating, one for each "out" argument of the contract. */
    void answer(std::initializer_list<GVariant*> values = {}) const;
    void refuse(const Refusal& refusal) const;
    /** Answers nothing, or refuses with that error if there is a failure. */
    void finish(const char* error, const std::string& failure) const;
    /** The call for who answers it later; the method then returns without an answer. */
    [[nodiscard]] Call later() const;

    /** It was answered or refused, or will be later. */
    [[nodiscard]] bool is_settled() const { return *is_settled_; }
    [[nodiscard]] GDBusMethodInvocation* invocation() const { return invocation_.get(); }

private:
    std::shared_ptr<GDBusMethodInvocation> invocation_;
    std::shared_ptr<bool> is_settled_ = std::make_shared<bool>(false);
};

/** Answers a call: with values, with a Refusal that it throws, with nothing when it just returns, or later. */
using Method = std::function<void(Call& call)>;

/** Each method of a contract, answered alike. */
std::map<std::string, Method> every_method(const std::string& interface, const Method& method);

/** What a component in this process does, there as long as the component runs. */
class Simulation {
public:
    virtual ~Simulation() = default;
    /** Those of its contract. */
    [[nodiscard]] virtual std::map<std::string, Method> methods() = 0;
};

/** The object of a contract, there as long as this lives. */
class BusObject {
public:
    /**
     * @param connection the bus.
     * @param interface  the contract's; calls that do not fit it never reach a method.
     * @param methods    by name; each of the contract is there.
     * @throws std::runtime_error when the object cannot be exported.
     */
    BusObject(GDBusConnection* connection, const std::string& interface,
              std::map<std::string, Method> methods);
    BusObject(const BusObject&) = delete;
    BusObject& operator=(const BusObject&) = delete;
    ~BusObject() { g_dbus_connection_unregister_object(connection_, registration_); }

    /** Sends a signal of the contract. @param values a floating tuple. */
    void emit(const char* signal, GVariant* values) const;

private:
    static void call(GDBusConnection* connection, const char* sender, const char* path, const char* interface,
                     const char* method, GVariant* arguments, GDBusMethodInvocation* invocation,
                     gpointer self);

    GDBusConnection* connection_;
    const GDBusNodeInfo& contract_;
    std::map<std::string, Method> methods_;
    guint registration_ = 0;
};

} // namespace simulator
