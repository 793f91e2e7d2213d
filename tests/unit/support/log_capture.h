#pragma once

#include "base/process.h"
#include "support/application_log.h"
#include "support/files.h"
#include "support/standard_error_to.h"

/** Captures the standard error of this process and its children during its lifetime. */
class LogCapture : public simulator::ApplicationLog {
public:
    LogCapture() : capture_(simulator::written_to(path()).error) { clear(); }

    /** All text captured so far. */
    [[nodiscard]] std::string text() const { return content_of(path()); }

    /** Discards the messages so far. */
    void clear() { std::filesystem::resize_file(path(), 0); }

private:
    simulator::StandardErrorTo capture_;
};
