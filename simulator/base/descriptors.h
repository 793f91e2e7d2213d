/** Opens non-blocking terminals and sockets. On failure the result is empty and errno is set. */
#pragma once

#include "owned.h"

#include <string>

namespace simulator {

/** @throws std::system_error with errno's message. */
[[noreturn]] void fail_with_errno(const std::string& what);

/** Opens a terminal in raw mode, not as the controlling terminal, and discards pending bytes. */
FileDescriptor open_terminal(const std::string& path);

/** Listens at a path of at most 107 bytes, replacing a stale socket. */
FileDescriptor listen_at(const std::string& path, int backlog);

/** Connects to the socket at a path. */
FileDescriptor connect_to(const std::string& path);

} // namespace simulator
