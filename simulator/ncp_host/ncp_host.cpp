#include "ncp_host.h"

#include "base/refusal.h"
#include "base/strings.h"
#include "contract.h"

#include <cstdlib>

namespace simulator {
namespace {

constexpr auto link_path = "/tmp/ttyZigbeeNCP";
constexpr std::string_view method_prefix = "ember_";

bool is_method(const std::string& name) {
    g_autoptr(GDBusNodeInfo) node = g_dbus_node_info_new_for_xml(contract::service_introspection, nullptr);
    return g_dbus_interface_info_lookup_method(node->interfaces[0], name.c_str()) != nullptr;
}

} // namespace

NcpHost::NcpHost(GDBusConnection* connection, guint limit, const ComponentLog& log)
    : connection_(connection), log_(log),
      link_(
          link_path, limit, [this] { emit(g_variant_new("(s)", "ready")); }, log),
      service_(connection, contract::service_path, contract::service_introspection,
               [this](const auto& method, auto* arguments, auto* invocation) {
                   handle_call(method, arguments, invocation);
               }),
      simulation_(connection, contract::simulation_path, contract::simulation_introspection,
                  [this](const auto& method, auto* arguments, auto* invocation) {
                      handle_simulation_call(method, arguments, invocation);
                  }) {}

bool NcpHost::set_behaviour(const std::string& method, const Behaviour& behaviour) {
    if (!is_method(method))
        return false;
    behaviours_[method] = behaviour;
    return true;
}

void NcpHost::handle_call(const std::string& method, GVariant* arguments, GDBusMethodInvocation* invocation) {
    std::optional<int> argument;
    if (g_variant_n_children(arguments) == 1) {
        gint value = 0;
        g_variant_get(arguments, "(i)", &value);
        argument = value;
    }
    const Call call{method, method + "(" + (argument ? std::to_string(*argument) : "") + ")", invocation};
    asked_.push_back(call.text);

    const auto behaviour = behaviours_[method];
    switch (behaviour.kind) {
    case Behaviour::Kind::normal:
    case Behaviour::Kind::late:
        ask_module(call, argument, behaviour.number);
        break;
    case Behaviour::Kind::code:
        reply(call, behaviour.number, "0 packets");
        break;
    case Behaviour::Kind::error:
        log_.note(call.text, " = an error");
        g_dbus_method_invocation_return_error(invocation, G_DBUS_ERROR, G_DBUS_ERROR_FAILED, "%s failed",
                                              method.c_str());
        break;
    case Behaviour::Kind::never:
        log_.note(call.text, " is never answered");
        g_object_unref(invocation);
        break;
    case Behaviour::Kind::dies:
        log_.note(call.text, " is the end of this host");
        std::_Exit(1);
    case Behaviour::Kind::reply:
        reply_with(call, behaviour.value);
        break;
    }
}

void NcpHost::ask_module(const Call& call, std::optional<int> argument, int late_by) {
    link_.request(call.method.substr(method_prefix.size()), argument,
                  [this, call, late_by](int code, const std::string& text) {
                      if (late_by == 0) {
                          reply(call, code, text);
                      } else {
                          call_after(static_cast<guint>(late_by),
                                     [this, call, code, text] { reply(call, code, text); });
                      }
                  });
}

void NcpHost::reply(const Call& call, int code, const std::string& text) const {
    const bool has_text = call.method == contract::statistics_method;
    log_.note(call.text, " = ", has_text ? "\"" + text + "\", " : "", code);
    g_dbus_method_invocation_return_value(
        call.invocation, has_text ? g_variant_new("(si)", text.c_str(), code) : g_variant_new("(i)", code));
}

/** Past the bus library's own check of replies, which would turn it into an error. */
void NcpHost::reply_with(const Call& call, const std::string& value) const {
    log_.note(call.text, " = ", value);
    g_autoptr(GDBusMessage) message =
        g_dbus_message_new_method_reply(g_dbus_method_invocation_get_message(call.invocation));
    g_dbus_message_set_body(message, tuple_of(value).get());
    g_dbus_connection_send_message(connection_, message, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr, nullptr);
    g_object_unref(call.invocation);
}

void NcpHost::emit(GVariant* parameters) const {
    const std::unique_ptr<gchar, decltype(&g_free)> text(g_variant_print(parameters, FALSE), g_free);
    log_.note(contract::event_signal, text.get());
    g_dbus_connection_emit_signal(connection_, nullptr, contract::service_path, contract::service_interface,
                                  contract::event_signal, parameters, nullptr);
}

void NcpHost::handle_simulation_call(const std::string& method, GVariant* arguments,
                                     GDBusMethodInvocation* invocation) {
    GVariant* result = nullptr;
    if (method == "SetBehaviour") {
        change_answer(arguments);
    } else if (method == "Emit") {
        const gchar* text = nullptr;
        g_variant_get(arguments, "(&s)", &text);
        emit(g_variant_new("(s)", text));
    } else if (method == "EmitValues") {
        const gchar* text = nullptr;
        g_variant_get(arguments, "(&s)", &text);
        const Value values = tuple_of(text);
        if (!values)
            throw Refusal("NoSuchValue", std::string("no tuple: ") + text);
        emit(values.get());
    } else {
        result = g_variant_new("(@as)", to_variant(asked_));
    }
    g_dbus_method_invocation_return_value(invocation, result);
}

void NcpHost::change_answer(GVariant* arguments) {
    const gchar* name = nullptr;
    const gchar* text = nullptr;
    g_variant_get(arguments, "(&s&s)", &name, &text);
    const auto behaviour = parse_behaviour(text);
    if (!behaviour || !set_behaviour(name, *behaviour))
        throw Refusal("NoSuchBehaviour",
                      std::string("no method ") + name + ", or no behaviour \"" + text + "\"");
}

} // namespace simulator
