/** Callbacks for C code, which no exception may enter. */
#pragma once

#include "Log.h"

#include <exception>

/** Logs the exception being handled as the end of an operation. */
inline void logException(const LogOrigin& origin) {
    try {
        throw;
    } catch (const std::exception& error) {
        LOG_ERROR_AT(origin, "ended with an exception: %s", error.what());
    } catch (const char* text) {
        LOG_ERROR_AT(origin, "ended with an exception: %s", text);
    } catch (...) {
        LOG_ERROR_AT(origin, "ended with an exception");
    }
}

/** `call` is `callback`, but logs an exception for `Origin` and then returns false, null or nothing. */
template <auto callback, class Origin>
struct GuardedCallback;

template <class Result, class... Parameters, Result (*callback)(Parameters...), class Origin>
struct GuardedCallback<callback, Origin> {
    static Result call(Parameters... parameters) noexcept {
        try {
            return callback(parameters...);
        } catch (...) {
            logException(Origin()());
            return Result();
        }
    }
};

/** The type of a function that gives the named operation's origin. */
#define ORIGIN_OF(operation) decltype([] { return LOG_ORIGIN(#operation); })
/** What C code is given in the place of a callback that serves the named operation. */
#define GUARDED_FOR(operation, ...) (&GuardedCallback<__VA_ARGS__, ORIGIN_OF(operation)>::call)
/** What C code is given in the place of a callback, a function's name. */
#define GUARDED(callback) GUARDED_FOR(callback, callback)
