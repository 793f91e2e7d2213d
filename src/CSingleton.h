/** Base class of singletons, created on first use. */
#pragma once

#include <mutex>

/**
 * Makes `T` a singleton. Declare it as `class T : public CSingleton<T>`, with `CSingleton` as the first base class.
 *
 * The mutex guards creation and destruction, not use. Throws `std::system_error` if the mutex cannot be locked.
 */
template <typename T>
class CSingleton {
public:
    CSingleton(const CSingleton&) = delete;
    CSingleton& operator=(const CSingleton&) = delete;
    virtual ~CSingleton() = default;

    /** Returns the instance, default-constructed if there is none; valid until `destroyInstance`. */
    static T& getInstance() {
        const std::lock_guard lock(mutex);
        if (instance == nullptr)
            instance = new T; // NOLINT(cppcoreguidelines-owning-memory)
        return *instance;
    }

    /** Deletes the instance, if there is one; a later `getInstance` creates a new one. */
    static void destroyInstance() {
        const std::lock_guard lock(mutex);
        delete instance; // NOLINT(cppcoreguidelines-owning-memory)
        instance = nullptr;
    }

protected:
    CSingleton() = default;

private:
    // A plain pointer, so that no destructor runs after main, when the toolkit and the bus library are gone.
    static inline T* instance = nullptr;
    static inline std::recursive_mutex mutex;
};
