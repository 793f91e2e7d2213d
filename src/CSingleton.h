/** The one instance of a class, made on first use. */
#pragma once

#include <mutex>

/**
 * Gives `T` exactly one instance: `class T : public CSingleton<T>`, with this as its first base.
 *
 * The mutex guards the making and the destroying, not the use of the instance. When it cannot be locked,
 * `std::system_error` is thrown.
 */
template <typename T>
class CSingleton {
public:
    CSingleton(const CSingleton&) = delete;
    CSingleton& operator=(const CSingleton&) = delete;
    virtual ~CSingleton() = default;

    /** The instance, made with the default constructor when there is none; valid until `destroyInstance`. */
    static T& getInstance() {
        const std::lock_guard lock(mutex);
        if (instance == nullptr)
            instance = new T; // NOLINT(cppcoreguidelines-owning-memory)
        return *instance;
    }

    /** Deletes the instance, if there is one; a later `getInstance` makes a new one. */
    static void destroyInstance() {
        const std::lock_guard lock(mutex);
        delete instance; // NOLINT(cppcoreguidelines-owning-memory)
        instance = nullptr;
    }

protected:
    CSingleton() = default;

private:
    // A plain pointer: an instance that nobody destroys lives until the process ends, and no destructor runs
    // after main, when the toolkit and the bus library are gone.
    static inline T* instance = nullptr;
    static inline std::recursive_mutex mutex;
};
