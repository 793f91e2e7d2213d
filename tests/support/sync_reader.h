/** A blocking screen reader for programs without a main loop. */
#pragma once

#include "ui_driver/screen_reader.h"

namespace simulator {

class SyncReader {
public:
    /**
     * Announces a screen reader. Applications check for one when they start.
     *
     * @param answer_limit see ScreenReader.
     * @throws std::runtime_error without an accessibility bus.
     */
    explicit SyncReader(std::chrono::milliseconds answer_limit) : reader_(answer_limit) {
        const auto failure = answer_of<std::string>([this](const auto& answer) {
            reader_.announce(
                [answer](const GError* error) { answer(error != nullptr ? error->message : ""); });
        });
        if (!failure.empty())
            throw std::runtime_error("no accessibility bus: " + failure);
    }

    /** See `ScreenReader::look`. */
    [[nodiscard]] Screen read(const std::string& application, Order order = Order::screen) {
        return answer_of<Screen>([&](const auto& answer) { reader_.look(application, order, answer); });
    }

    /** See `ScreenReader::activate`. @throws std::runtime_error if the widget has no action. */
    void activate(const Widget& widget) {
        const auto refusal =
            answer_of<std::string>([&](const auto& answer) { reader_.activate(widget, answer); });
        if (!refusal.empty())
            throw std::runtime_error(refusal);
    }

private:
    /** Starts an operation and runs a private main loop until it is finished. */
    template <class Answer>
    static Answer answer_of(const std::function<void(const std::function<void(const Answer&)>&)>& start) {
        g_autoptr(GMainContext) context = g_main_context_new();
        g_main_context_push_thread_default(context);
        std::optional<Answer> answer;
        start([&answer](const Answer& given) { answer.emplace(given); });
        while (!answer)
            g_main_context_iteration(context, TRUE);
        g_main_context_pop_thread_default(context);
        return *std::move(answer);
    }

    ScreenReader reader_;
};

} // namespace simulator
