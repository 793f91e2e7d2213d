/** The application's records in the platform's secure storage. */
#pragma once

#include <string>

/** Texts in the secure storage, by key, readable by this application alone. */
class SecureData {
public:
    /** The stored text; empty when there is none or it cannot be read (the platform's status is logged). */
    static std::string LoadStringData(const std::string& key);

    /** Stores a text with its terminating NUL, replacing an older one; the platform's status is logged. */
    static void StoreStringData(const std::string& key, const std::string& value);
};
