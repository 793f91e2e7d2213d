/** Work handed from one thread to another. */
#pragma once

#include <glib.h>

#include <functional>
#include <memory>
#include <thread>
#include <utility>

namespace simulator {

/** Calls `action` in the thread that runs this main context; null is the default one. */
inline void call_in(GMainContext* context, std::function<void()> action) {
    auto held = std::make_unique<std::function<void()>>(std::move(action));
    const auto call = +[](gpointer data) -> gboolean {
        (*static_cast<std::function<void()>*>(data))();
        return G_SOURCE_REMOVE;
    };
    const auto release = +[](gpointer data) {
        const std::unique_ptr<std::function<void()>> ended(static_cast<std::function<void()>*>(data));
    };
    GSource* const source =
        g_idle_source_new(); // g_main_context_invoke may call at once, in the wrong thread
    g_source_set_priority(source, G_PRIORITY_DEFAULT);
    g_source_set_callback(source, call, held.release(), release);
    g_source_attach(source, context);
    g_source_unref(source);
}

/** A thread with a main loop of its own, until this goes. */
class LoopThread {
public:
    LoopThread()
        : context_(g_main_context_new()), loop_(g_main_loop_new(context_, FALSE)), thread_([this] {
              g_main_context_push_thread_default(context_);
              g_main_loop_run(loop_);
              g_main_context_pop_thread_default(context_);
          }) {}
    LoopThread(const LoopThread&) = delete;
    LoopThread& operator=(const LoopThread&) = delete;
    ~LoopThread() {
        call_in(context_, [this] { g_main_loop_quit(loop_); });
        thread_.join();
        g_main_loop_unref(loop_);
        g_main_context_unref(context_);
    }

    [[nodiscard]] GMainContext* context() const { return context_; }

private:
    GMainContext* context_;
    GMainLoop* loop_;
    std::thread thread_;
};

} // namespace simulator
