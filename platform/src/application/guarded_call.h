/** Calls into the application that let no exception reach the C code around them. */
#pragma once

#include "platform/log.h"

#include <exception>

namespace platform {

/** Logs the exception being handled as one that left the callback `name`. */
inline void log_escaped_exception(const char* name) {
    try {
        throw;
    } catch (const std::exception& error) {
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "%s ended with an exception: %s", name,
                     error.what());
    } catch (...) {
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "%s ended with an exception", name);
    }
}

/**
 * Calls `callback` if it is not null; an exception that leaves it is logged.
 *
 * @param name what the log calls the callback.
 * @return what the callback returned; a default value (false, or nothing) when it is null or threw.
 */
template <typename Result, typename... Parameters, typename... Arguments>
Result guarded_call(const char* name, Result (*callback)(Parameters...), Arguments... arguments) {
    try {
        if (callback)
            return callback(arguments...);
    } catch (...) {
        log_escaped_exception(name);
    }
    return Result();
}

} // namespace platform
