/** Calls into the application that let no exception reach the C code around them. */
#pragma once

#include "platform/log.h"

#include <exception>

namespace platform {

/**
 * Calls `callback` if it is not null; an exception that leaves it is logged.
 *
 * @param name what the log calls the callback.
 * @return what the callback returned; a default value (false, or nothing) when it is null or threw.
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
