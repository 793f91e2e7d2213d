/**
 * Logging to the platform log with the tag "VELMORA".
 *
 * Every message begins with its origin, `dbus_client.cpp: Init(42) > `. `LOG_INFO` and `LOG_ERROR` take a printf
 * format (a literal) and its arguments; the origin is the enclosing function. Shared code names its caller as the
 * origin: the caller passes `LOG_ORIGIN("createSetPowerButton")`, and the shared code uses `LOG_INFO_AT` or
 * `LOG_ERROR_AT`.
 */
#pragma once

#include <platform/log.h>

/** The origin of a message: the source file's base name, the operation and the line. */
struct LogOrigin {
    const char* file;
    const char* function;
    int line;
};

/** The origin of the named operation, with the file and line where the macro is used. */
#define LOG_ORIGIN(operation) (LogOrigin{__FILE_NAME__, operation, __LINE__})

// The empty text serves calls that pass only a format; cppcheck 2.10 does not parse __VA_OPT__.
#define LOG_AT(priority, origin, ...) LOG_FORMATTED_AT(priority, origin, __VA_ARGS__, "")
#define LOG_FORMATTED_AT(priority, origin, format, ...)                                                      \
    do {                                                                                                     \
        const LogOrigin& log_origin = origin;                                                                \
        __dlog_print(platform::LogBuffer::main, (priority), "VELMORA", "%s: %s(%d) > " format "%s",          \
                     log_origin.file, log_origin.function, log_origin.line, __VA_ARGS__);                    \
    } while (false)

#define LOG_INFO_AT(origin, ...) LOG_AT(platform::LogPriority::info, origin, __VA_ARGS__)
#define LOG_ERROR_AT(origin, ...) LOG_AT(platform::LogPriority::error, origin, __VA_ARGS__)
#define LOG_INFO(...) LOG_INFO_AT(LOG_ORIGIN(__func__), __VA_ARGS__)
#define LOG_ERROR(...) LOG_ERROR_AT(LOG_ORIGIN(__func__), __VA_ARGS__)
