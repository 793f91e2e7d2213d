#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

/** Captures what this process and its children write to standard error, as long as it lives. */
class LogCapture {
public:
    LogCapture();
    LogCapture(const LogCapture&) = delete;
    LogCapture& operator=(const LogCapture&) = delete;
    ~LogCapture();

    /** All that was written so far. */
    [[nodiscard]] std::string text() const;

    /** The application's messages so far without process and line numbers: "E dbus_client.cpp: Init > [b]". */
    [[nodiscard]] std::vector<std::string> messages() const;

    /** The text of the messages so far of one operation, all of them from one file. */
    [[nodiscard]] std::vector<std::string> messages_of(const std::string& file_and_operation) const;

    /** Forgets the messages so far. */
    void clear();

private:
    struct Close {
        void operator()(FILE* stream) const { fclose(stream); } // NOLINT(cppcoreguidelines-owning-memory)
    };
    std::unique_ptr<FILE, Close> file;
    int standard_error;
};
