/** Where the application's log goes while it is measured. */
#pragma once

#include "common/file_descriptor.h"

#include <fcntl.h>
#include <unistd.h>

namespace bench {

/** Standard error goes to a file, where a television keeps the application's log. */
class LogFile {
public:
    LogFile() : standard_error_(dup(STDERR_FILENO)) {
        const station::FileDescriptor file(
            open("/tmp/measured.log", O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
        dup2(file.get(), STDERR_FILENO);
    }
    ~LogFile() { dup2(standard_error_.get(), STDERR_FILENO); }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;

private:
    station::FileDescriptor standard_error_;
};

} // namespace bench
