/** A blocking screen reader for tests. */
#pragma once

#include "ui_driver/screen_reader.h"

namespace simulator {

class SyncReader {
public:
    /** Announces a screen reader. Applications check for one when they start. */
    SyncReader() { (void)read(""); }

    /** See `ScreenReader::look`. */
    [[nodiscard]] Screen read(const std::string& application, Order order = Order::screen) {
        return answer_of<Screen>([&](const auto& answer) { reader_.look(application, order, answer); });
    }

    /** See `ScreenReader::activate`. Returns why the widget could not be activated; empty on success. */
    std::string activate(const Widget& widget) {
        return answer_of<std::string>([&](const auto& answer) { reader_.activate(widget, answer); });
    }

private:
    /** Starts an operation and runs the main loop until it is finished. */
    template <class Answer>
    static Answer answer_of(const std::function<void(const std::function<void(const Answer&)>&)>& start) {
        std::optional<Answer> answer;
        start([&answer](const Answer& given) { answer = given; });
        while (!answer)
            g_main_context_iteration(nullptr, TRUE);
        return *answer;
    }

    ScreenReader reader_{std::chrono::seconds(1)};
};

} // namespace simulator
