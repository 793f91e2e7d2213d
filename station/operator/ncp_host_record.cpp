#include "ncp_host_record.h"

#include "station_bus.h"

#include <gio/gio.h>

namespace station {

std::vector<std::string> asked_of_ncp_host() {
    const Answer answer = call(ncp_host, "Asked");
    g_autoptr(GVariantIter) calls = nullptr;
    g_variant_get(answer.get(), "(as)", &calls);
    std::vector<std::string> asked;
    const char* text = nullptr;
    while (g_variant_iter_next(calls, "&s", &text) != FALSE)
        asked.emplace_back(text);
    return asked;
}

void let_ncp_host_answer(const std::string& method, const std::string& behaviour) {
    call(ncp_host, "Answer", g_variant_new("(ss)", method.c_str(), behaviour.c_str()));
}

void let_ncp_host_emit(const std::string& event) {
    call(ncp_host, "Emit", g_variant_new("(s)", event.c_str()));
}

} // namespace station
