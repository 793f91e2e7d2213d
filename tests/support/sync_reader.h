/** Reads the screen for a program without a main loop: each operation waits. */
#pragma once

#include "ui_driver/screen_reader.h"

namespace simulator {

class SyncReader {
public:
    /**
     * Announces a screen reader, which an application asks for when it starts.
     *
     * @param patience see ScreenReader.
     * @throws std::runtime_error without an accessibility bus.
     */
    explicit SyncReader(std::chrono::milliseconds patience);

    /** See `ScreenReader::look`. */
    [[nodiscard]] Screen read(const std::string& application, Places places = Places::asked);
    /** See `ScreenReader::activate`. @throws std::runtime_error when the widget has no action. */
    void activate(const Widget& widget);

private:
    ScreenReader reader_;
};

} // namespace simulator
