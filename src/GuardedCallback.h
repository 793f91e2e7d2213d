/** Wraps callbacks for C code, so that no exception escapes into it. */
#pragma once

#include "Log.h"

#include <exception>

/** Logs that an operation ended with the current exception. */
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

/** `call` runs `callback`; if that throws, it logs the exception with the origin `Origin` and returns a zero value. */
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

/** The type of a function that returns the named operation's origin. */
#define ORIGIN_OF(operation) decltype([] { return LOG_ORIGIN(#operation); })
/** A guarded version of a callback; exceptions are logged with the named operation as the origin. */
#define GUARDED_FOR(operation, ...) (&GuardedCallback<__VA_ARGS__, ORIGIN_OF(operation)>::call)
/** A guarded version of a callback, given by its function name. */
#define GUARDED(callback) GUARDED_FOR(callback, callback)
