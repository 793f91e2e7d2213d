#include "remote_radio.h"

#include "common/texts.h"

namespace station {

std::vector<std::string> asked_of_host(const Remote& remote) {
    return texts_of(first_of(remote.call(ncp_host, "Asked")).get());
}

void let_host_answer(const Remote& remote, const std::string& method, const std::string& behaviour) {
    remote.call(ncp_host, "Answer", g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
}

void let_host_say(const Remote& remote, const std::string& values) {
    remote.call(ncp_host, "EmitValue", g_variant_new("(s)", values.c_str()));
}

RadioState radio_state(const Remote& remote) {
    const Value state = first_of(remote.call(radio_module, "State"));
    const char* mode = "";
    gboolean streams = FALSE;
    g_variant_lookup(state.get(), "mode", "&s", &mode);
    g_variant_lookup(state.get(), "stream", "b", &streams);
    return {mode, streams != FALSE};
}

} // namespace station
