/** Calls application callbacks so that no exception escapes into C code. */
#pragma once

#include "platform/log.h"

#include <exception>

namespace platform {

/**
 * Calls `callback` if it is not null; logs any exception.
 *
 * @param name the callback's name in the log.
 * @return the callback's result; a default value (false, or nothing) if it is null or throws.
 */
template <typename Result, typename... Parameters, typename... Arguments>
Result guarded_call(const char* name, Result (*callback)(Parameters...), Arguments... arguments) {
    const auto log = [name](const char* what) {
        __dlog_print(LogBuffer::main, LogPriority::error, "PLATFORM", "%s ended with an exception: %s", name,
                     what);
    };
    try {
        if (callback)
            return callback(arguments...);
    } catch (const std::exception& error) {
        log(error.what());
    } catch (...) {
        log("of an unknown type");
    }
    return Result();
}

} // namespace platform
