#include "ncp_host.h"

#include "base/strings.h"
#include "contract.h"

#include <algorithm>
#include <sstream>

namespace simulator {
namespace {

constexpr guint answer_limit_milliseconds = 5000;
constexpr auto link_path = "/tmp/ttyZigbeeNCP";
constexpr std::string_view method_prefix = "ember_";

std::optional<int> argument_of(const Call& call) {
    const auto count = g_variant_n_children(g_dbus_method_invocation_get_parameters(call.invocation()));
    return count == 1 ? std::optional(call.number()) : std::nullopt;
}

/** "ember_set_channel(15)", for example. */
std::string text_of(const Call& call) {
    const auto argument = argument_of(call);
    return call.method() + "(" + (argument ? std::to_string(*argument) : "") + ")";
}

} // namespace

std::optional<Behaviour> parse_behaviour(const std::string& text) {
    using Kind = Behaviour::Kind;
    static const std::map<std::string, Kind> plain{
        {"normal", Kind::normal}, {"error", Kind::error}, {"never", Kind::never}, {"dies", Kind::dies}};
    if (const auto found = plain.find(text); found != plain.end())
        return Behaviour{found->second};
    constexpr std::string_view reply = "reply ";
    if (text.starts_with(reply)) {
        const std::string value = text.substr(reply.size());
        return tuple_of(value) ? std::optional(Behaviour{Kind::reply, 0, value}) : std::nullopt;
    }

    std::istringstream words(text);
    std::string word;
    std::string rest;
    int number = 0;
    if (!(words >> word >> number) || words >> rest)
        return std::nullopt;
    if (word == "code")
        return Behaviour{Kind::code, number};
    if (word == "late" && number >= 0)
        return Behaviour{Kind::late, number};
    return std::nullopt;
}

NcpHost::NcpHost(const std::vector<std::string>& answers, std::function<void()> die)
    : connection_(connect_to_bus(g_getenv("DBUS_SYSTEM_BUS_ADDRESS"))), die_(std::move(die)),
      link_(
          link_path, answer_limit_milliseconds, [this] { emit(g_variant_new("(s)", "ready")); }, log_),
      service_(connection_.get(), contract::service_interface,
               every_method(contract::service_interface, [this](Call& call) { handle(call.later()); })) {
    for (const std::string& answer : answers) {
        const auto middle = std::min(answer.find('='), answer.size() - 1);
        set_behaviour(answer.substr(0, middle), answer.substr(middle + 1));
    }
    own_name(connection_.get(), contract::bus_name);
}

NcpHost::~NcpHost() { g_dbus_connection_close_sync(connection_.get(), nullptr, nullptr); }

std::map<std::string, Method> NcpHost::methods() {
    return {{"SetBehaviour", [this](Call& call) { set_behaviour(call.text(0), call.text(1)); }},
            {"Emit", [this](Call& call) { emit(g_variant_new("(s)", call.text().c_str())); }},
            {"EmitValues",
             [this](Call& call) {
                 const Value values = tuple_of(call.text());
                 if (!values)
                     throw Refusal("NoSuchValue", "not a tuple: " + call.text());
                 emit(values.get());
             }},
            {"Calls", [this](Call& call) { call.answer({to_variant(calls_)}); }}};
}

void NcpHost::set_behaviour(const std::string& method, const std::string& text) {
    const auto behaviour = parse_behaviour(text);
    if (!behaviour || !every_method(contract::service_interface, {}).contains(method))
        throw Refusal("NoSuchBehaviour", "unknown method " + method + " or behaviour \"" + text + "\"");
    behaviours_[method] = *behaviour;
}

void NcpHost::handle(const Call& call) {
    const std::string text = text_of(call);
    calls_.push_back(text);
    const auto behaviour = behaviours_[call.method()];
    switch (behaviour.kind) {
    case Behaviour::Kind::normal:
    case Behaviour::Kind::late:
        ask_module(call, behaviour.number);
        break;
    case Behaviour::Kind::code:
        reply(call, behaviour.number, "0 packets");
        break;
    case Behaviour::Kind::error:
        log_.note(text, " returns an error");
        g_dbus_method_invocation_return_error(g_object_ref(call.invocation()), G_DBUS_ERROR,
                                              G_DBUS_ERROR_FAILED, "%s failed", call.method().c_str());
        break;
    case Behaviour::Kind::never:
        log_.note(text, " is never answered");
        break;
    case Behaviour::Kind::dies:
        log_.note(text, " stops this host");
        die_();
        break;
    case Behaviour::Kind::reply:
        reply_with(call, behaviour.value);
        break;
    }
}

void NcpHost::ask_module(const Call& call, int late_by) {
    link_.request(call.method().substr(method_prefix.size()), argument_of(call),
                  [this, call, late_by](int code, const std::string& text) {
                      if (late_by == 0)
                          return reply(call, code, text);
                      const auto late = late_replies_.emplace(late_replies_.end());
                      *late = call_every(static_cast<guint>(late_by), [this, call, code, text, late] {
                          reply(call, code, text);
                          late_replies_.erase(late);
                      });
                  });
}

void NcpHost::reply(const Call& call, int code, const std::string& text) const {
    const bool has_text = call.method() == contract::statistics_method;
    log_.note(text_of(call), " = ", has_text ? "\"" + text + "\", " : "", code);
    if (has_text)
        call.answer({g_variant_new_string(text.c_str()), g_variant_new_int32(code)});
    else
        call.answer({g_variant_new_int32(code)});
}

/** Bypasses GDBus's type check of replies, which would turn the value into an error. */
void NcpHost::reply_with(const Call& call, const std::string& value) const {
    log_.note(text_of(call), " = ", value);
    g_autoptr(GDBusMessage) message =
        g_dbus_message_new_method_reply(g_dbus_method_invocation_get_message(call.invocation()));
    g_dbus_message_set_body(message, tuple_of(value).get());
    g_dbus_connection_send_message(connection_.get(), message, G_DBUS_SEND_MESSAGE_FLAGS_NONE, nullptr,
                                   nullptr);
}

void NcpHost::emit(GVariant* values) const {
    log_.note(contract::event_signal, printed(values));
    service_.emit(contract::event_signal, values);
}

} // namespace simulator
