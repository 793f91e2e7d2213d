#pragma once

#include "base/process.h"
#include "support/application_log.h"
#include "support/environment.h"
#include "support/standard_error_to.h"

/** Captures the standard error of this process and its children during its lifetime. */
class LogCapture : public simulator::ApplicationLog {
public:
    LogCapture() : capture_(simulator::written_to(path()).error) { clear(); }

    /** All text captured so far. */
    [[nodiscard]] std::string text() const { return content_of(path()).value(); }

    /** The texts of the messages of one operation. */
    [[nodiscard]] std::vector<std::string> messages_of(const std::string& file_and_operation) const {
        std::vector<std::string> result = messages();
        const std::string start = "E " + file_and_operation + " > ";
        std::erase_if(result, [&](const std::string& message) { return !message.starts_with(start); });
        for (std::string& message : result)
            message.erase(0, start.size());
        return result;
    }

    /** Discards the messages so far. */
    void clear() { std::filesystem::resize_file(path(), 0); }

private:
    simulator::StandardErrorTo capture_;
};
