/** Sockets that are found by a path. */
#pragma once

#include "file_descriptor.h"

#include <string>

namespace simulator {

/**
 * Listens at a path, taking the place of a socket left over.
 *
 * @param path    at most 107 bytes.
 * @param backlog connections that may wait to be accepted.
 * @return the socket, not blocking; empty with errno set when it cannot listen there.
 */
FileDescriptor listen_at(const std::string& path, int backlog);

/** Connects to the socket at a path, not blocking. Empty with errno set when nobody listens. */
FileDescriptor connect_to(const std::string& path);

} // namespace simulator
