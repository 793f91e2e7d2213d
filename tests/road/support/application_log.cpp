#include "support/application_log.h"

#include <algorithm>
#include <deque>
#include <fstream>
#include <numeric>
#include <regex>

std::vector<std::string> ApplicationLog::all() const {
    // The radio stack writes to the same file, "socat" without a line's end: a message may begin inside a
    // line.
    static const std::regex message(
        R"(([EWI])/(VELMORA\(\d+\): (\w+\.cpp: \w+)\(\d+\) >|PLATFORM\(\d+\):) (.*))");
    std::vector<std::string> messages;
    std::ifstream file(path_);
    for (std::string line; std::getline(file, line);) {
        std::smatch parts;
        if (std::regex_search(line, parts, message))
            messages.push_back(parts[1].str() + " " + (parts[3].matched ? parts[3].str() : "platform") +
                               " > " + parts[4].str());
    }
    return messages;
}

std::vector<std::string> ApplicationLog::messages() const {
    static const std::regex repeated(R"(> waiting /|Command \[pgrep -c \w+\] result : [1-9])");
    static const std::regex pointer("0x[0-9a-f]+");
    static const std::regex sender(":1\\.\\d+");
    static const std::regex failed_status(R"(nRet\[-\d+\])");
    std::vector<std::string> messages;
    for (std::string message : all()) {
        if (std::regex_search(message, repeated))
            continue;
        message = std::regex_replace(message, pointer, "POINTER");
        message = std::regex_replace(message, sender, "SENDER");
        messages.push_back(std::regex_replace(message, failed_status, "nRet[-N]"));
    }
    return messages;
}

std::vector<std::string> ApplicationLog::complaints_of_libraries() const {
    static const std::regex complaint(R"((CRI|ERR|WRN)<\d+>|-(ERROR|CRITICAL|WARNING) \*\*)");
    std::vector<std::string> complaints;
    std::ifstream file(path_);
    for (std::string line; std::getline(file, line);)
        if (std::regex_search(line, complaint))
            complaints.push_back(line);
    return complaints;
}

long ApplicationLog::count(const std::string& text) const {
    return std::ranges::count_if(
        all(), [&text](const std::string& message) { return message.find(text) != std::string::npos; });
}

std::string ApplicationLog::end() const {
    constexpr std::size_t most_lines = 25;
    static const std::regex line_of_application(R"([EWI]/(VELMORA|PLATFORM)\(\d+\): .*)");
    std::deque<std::string> lines;
    std::ifstream file(path_);
    for (std::string line; std::getline(file, line);) {
        std::smatch found;
        if (std::regex_search(line, found, line_of_application))
            lines.push_back(found.str() + "\n");
        if (lines.size() > most_lines)
            lines.pop_front();
    }
    return std::accumulate(lines.begin(), lines.end(), std::string());
}
