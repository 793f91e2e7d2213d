#include "sync_reader.h"

#include <functional>
#include <gio/gio.h>
#include <stdexcept>

namespace simulator {
namespace {

/** Turns the main loop until something is done; the answers come here, whatever loop the caller has. */
void wait_for(const std::function<void(const std::function<void()>& done)>& start) {
    g_autoptr(GMainContext) context = g_main_context_new();
    g_main_context_push_thread_default(context);
    bool is_done = false;
    start([&is_done] { is_done = true; });
    while (!is_done)
        g_main_context_iteration(context, TRUE);
    g_main_context_pop_thread_default(context);
}

} // namespace

Screen SyncReader::read(const std::string& application, Places places) {
    Screen screen({});
    wait_for([&](const auto& done) {
        reader_.look(application, places, [&screen, done](const Screen& seen) {
            screen = seen;
            done();
        });
    });
    return screen;
}

void SyncReader::activate(const Widget& widget) {
    std::string refusal;
    wait_for([&](const auto& done) {
        reader_.activate(widget, [&refusal, done](const std::string& why) {
            refusal = why;
            done();
        });
    });
    if (!refusal.empty())
        throw std::runtime_error(refusal);
}

SyncReader::SyncReader(std::chrono::milliseconds patience) : reader_(patience) {
    std::string failure;
    wait_for([&](const auto& done) {
        reader_.announce([&failure, done](const GError* error) {
            failure = error != nullptr ? error->message : "";
            done();
        });
    });
    if (!failure.empty())
        throw std::runtime_error("no accessibility bus: " + failure);
}

} // namespace simulator
