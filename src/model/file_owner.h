/** Who owns the files that other applications of the device read. */
#pragma once

#include <unistd.h>

/**
 * Gives a file to the device's owner account, user id 5001 and group id 100.
 *
 * @return false when that fails, for example because the file is missing.
 */
inline bool give_to_device_owner(const char* path) {
    constexpr uid_t owner_user = 5001;
    constexpr gid_t users_group = 100;
    return chown(path, owner_user, users_group) == 0;
}
