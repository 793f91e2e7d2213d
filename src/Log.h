/**
 * The application's messages in the platform log, with the tag "VELMORA".
 *
 * Every message begins with the place it speaks for, `dbus_client.cpp: Init(42) > `. `LOG_INFO` and
 * `LOG_ERROR` take a printf format (a literal) and its arguments and speak for the operation they stand in.
 * Shared code speaks for the operation it serves: that operation passes `LOG_ORIGIN("createSetPowerButton")`
 * down, and the shared code uses `LOG_INFO_AT` or `LOG_ERROR_AT`.
 */
#pragma once

#include <platform/log.h>

/** The place a message speaks for: the source file's base name, the operation and the source line. */
struct LogOrigin {
    const char* file;
    const char* function;
    int line;
};

/** The origin of the named operation, at the line and in the file where this stands. */
#define LOG_ORIGIN(operation) (LogOrigin{__FILE_NAME__, operation, __LINE__})

#define LOG_AT(priority, origin, format, ...)                                                                \
    do {                                                                                                     \
        const LogOrigin& log_origin = origin;                                                                \
        __dlog_print(platform::LogBuffer::main, (priority), "VELMORA", "%s: %s(%d) > " format,               \
                     log_origin.file, log_origin.function, log_origin.line __VA_OPT__(, ) __VA_ARGS__);      \
    } while (false)

#define LOG_INFO_AT(origin, ...) LOG_AT(platform::LogPriority::info, origin, __VA_ARGS__)
#define LOG_ERROR_AT(origin, ...) LOG_AT(platform::LogPriority::error, origin, __VA_ARGS__)
#define LOG_INFO(...) LOG_INFO_AT(LOG_ORIGIN(__func__), __VA_ARGS__)
#define LOG_ERROR(...) LOG_ERROR_AT(LOG_ORIGIN(__func__), __VA_ARGS__)
