/** D-Bus: connections, names, and objects described by an interface file and implemented by a table of methods. */
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

/** Opens a private connection; losing it does not exit the process. @throws std::runtime_error. */
BusConnection connect_to_bus(const std::string& address);

/** Owns a name on the bus. @throws std::runtime_error if it is not available. */
void own_name(GDBusConnection* connection, const char* name);

/** Returns the parsed interfaces/INTERFACE.xml: the object's path and its single interface. */
const GDBusNodeInfo& contract_of(const std::string& interface);

/** The reason to refuse a call; the D-Bus error is "org.velmora.Simulator.Error.NAME". */
class Refusal : public std::runtime_error {
public:
    Refusal(const std::string& name, const std::string& message)
        : std::runtime_error(message), name_("org.velmora.Simulator.Error." + name) {}
    [[nodiscard]] const std::string& name() const { return name_; }

private:
    std::string name_;
};

/** A method call. Copies refer to the same call; if all are destroyed unanswered, the caller gets no answer. */
class Call {
public:
    /** Takes ownership of the invocation. */
    explicit Call(GDBusMethodInvocation* invocation);

    [[nodiscard]] std::string method() const;
    [[nodiscard]] std::string sender() const;
    [[nodiscard]] Value argument(gsize index = 0) const;
    [[nodiscard]] std::string text(gsize index = 0) const;
    [[nodiscard]] std::vector<std::string> texts(gsize index = 0) const;
    [[nodiscard]] int number(gsize index = 0) const;
    [[nodiscard]] bool flag(gsize index = 0) const;
    [[nodiscard]] std::chrono::milliseconds milliseconds(gsize index = 0) const;
    /** Returns a descriptor passed with the call, which the receiver must close; -1 if there is none. */
    [[nodiscard]] int take_descriptor(int index) const;

    /** @param values floating; one per "out" argument of the method. */
    void answer(std::initializer_list<GVariant*> values = {}) const;
    void refuse(const Refusal& refusal) const;
    /** Answers without values if `failure` is empty; otherwise refuses with the name `error` and this message. */
    void finish(const char* error, const std::string& failure) const;
    /** Returns a copy to answer later; until then the call stays open. */
    [[nodiscard]] Call later() const;

    /** Whether the call was answered, refused or deferred (`later`). */
    [[nodiscard]] bool is_settled() const { return *is_settled_; }
    [[nodiscard]] GDBusMethodInvocation* invocation() const { return invocation_.get(); }

private:
    std::shared_ptr<GDBusMethodInvocation> invocation_;
    std::shared_ptr<bool> is_settled_ = std::make_shared<bool>(false);
};

/** Answers a call, defers the answer (`later`) or throws a Refusal; if it only returns, the answer has no values. */
using Method = std::function<void(Call& call)>;

/** Maps every method of an interface to the same function. */
std::map<std::string, Method> every_method(const std::string& interface, const Method& method);

/** The implementation of a component in this process; exists while the component runs. */
class Simulation {
public:
    virtual ~Simulation() = default;
    /** Returns the methods of its interface. */
    [[nodiscard]] virtual std::map<std::string, Method> methods() = 0;
};

/** Exports an object with one interface on the bus, until destroyed. */
class BusObject {
public:
    /**
     * @param connection the bus.
     * @param interface  the interface's name; calls that do not match the interface never reach a method.
     * @param methods    all methods of the interface, by name.
     * @throws std::runtime_error if the object cannot be exported.
     */
    BusObject(GDBusConnection* connection, const std::string& interface,
              std::map<std::string, Method> methods);
    BusObject(const BusObject&) = delete;
    BusObject& operator=(const BusObject&) = delete;
    ~BusObject() { g_dbus_connection_unregister_object(connection_, registration_); }

    /** Sends a signal of the interface. @param values a floating tuple. */
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
