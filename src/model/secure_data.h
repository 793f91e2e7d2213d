/** The application's records in the platform's secure storage. */
#pragma once

#include <string>

/** Strings in the secure storage, by key, readable only by this application. */
class SecureData {
public:
    /** Returns the stored string, or an empty one if there is none or it cannot be read; logs the platform's status. */
    static std::string LoadStringData(const std::string& key);

    /** Stores a string with its terminating NUL, replacing an old one; logs the platform's status. */
    static void StoreStringData(const std::string& key, const std::string& value);
};
