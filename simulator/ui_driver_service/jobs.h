/** Work that takes a while, each piece in a thread of its own. */
#pragma once

#include <glib.h>

#include <functional>
#include <memory>

namespace simulator {

/** Waits for what is still under way when it goes. */
class Jobs {
public:
    Jobs() : pool_(g_thread_pool_new(work, nullptr, -1, FALSE, nullptr)) {}
    Jobs(const Jobs&) = delete;
    Jobs& operator=(const Jobs&) = delete;
    ~Jobs() { g_thread_pool_free(pool_, FALSE, TRUE); }

    void start(std::function<void()> job) {
        auto held = std::make_unique<std::function<void()>>(std::move(job));
        g_thread_pool_push(pool_, held.release(), nullptr);
    }

private:
    static void work(gpointer job, gpointer /*data*/) {
        const std::unique_ptr<std::function<void()>> held(static_cast<std::function<void()>*>(job));
        (*held)();
    }

    GThreadPool* pool_;
};

} // namespace simulator
