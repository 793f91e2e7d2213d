#include "support/log_capture.h"

#include <array>
#include <regex>
#include <sstream>
#include <unistd.h>

LogCapture::LogCapture() : file(tmpfile()), standard_error(dup(STDERR_FILENO)) {
    dup2(fileno(file.get()), STDERR_FILENO);
}

LogCapture::~LogCapture() {
    dup2(standard_error, STDERR_FILENO);
    close(standard_error);
}

std::string LogCapture::text() const {
    std::string text;
    std::array<char, 4096> piece{};
    ssize_t size = 0;
    while ((size = pread(fileno(file.get()), piece.data(), piece.size(), static_cast<off_t>(text.size()))) >
           0)
        text.append(piece.data(), static_cast<std::size_t>(size));
    return text;
}

std::vector<std::string> LogCapture::messages() const {
    static const std::regex message_line(R"(([A-Z])/VELMORA\(\d+\): (\S+: \w+)\(\d+\) > (.*))");
    std::vector<std::string> result;
    std::istringstream lines(text());
    std::smatch match;
    for (std::string line; std::getline(lines, line);)
        if (std::regex_match(line, match, message_line))
            result.push_back(match.str(1) + " " + match.str(2) + " > " + match.str(3));
    return result;
}

std::vector<std::string> LogCapture::messages_of(const std::string& file_and_operation) const {
    const std::string start = "E " + file_and_operation + " > ";
    std::vector<std::string> result;
    for (const std::string& message : messages())
        if (message.starts_with(start))
            result.push_back(message.substr(start.size()));
    return result;
}

void LogCapture::clear() {
    if (ftruncate(fileno(file.get()), 0) == 0)
        lseek(fileno(file.get()), 0, SEEK_SET); // also standard error's place in it
}
