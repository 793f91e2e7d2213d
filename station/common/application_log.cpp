#include "application_log.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>

namespace station {
namespace {

std::vector<std::string> lines_of(const std::string& path) {
    std::vector<std::string> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

} // namespace

std::vector<std::string> ApplicationLog::messages() const {
    // The radio stack writes to the same file, "socat" without a line's end: a message may begin inside a line.
    static const std::regex message(
        R"(([EWI])/(VELMORA\(\d+\): (\w+\.cpp: \w+)\(\d+\) >|PLATFORM\(\d+\):) (.*))");
    static const std::regex failed_status(R"(nRet\[-\d+\])");
    std::vector<std::string> messages;
    for (const std::string& line : lines_of(path_)) {
        std::smatch parts;
        if (std::regex_search(line, parts, message))
            messages.push_back(parts[1].str() + " " + (parts[3].matched ? parts[3].str() : "platform") +
                               " > " + std::regex_replace(parts[4].str(), failed_status, "nRet[-N]"));
    }
    return messages;
}

long ApplicationLog::count(const std::string& text) const {
    return std::ranges::count_if(
        messages(), [&text](const std::string& message) { return message.find(text) != std::string::npos; });
}

std::vector<std::string> ApplicationLog::complaints_of_libraries() const {
    // EFL's accessibility complains of a process that ends while it announces itself.
    static const std::regex complaint(
        R"((CRI|ERR|WRN)<\d+>(?!.*Canceled by user)|-(ERROR|CRITICAL|WARNING) \*\*)");
    std::vector<std::string> lines = lines_of(path_);
    std::erase_if(lines, [](const std::string& line) { return !std::regex_search(line, complaint); });
    return lines;
}

std::string ApplicationLog::end() const {
    constexpr std::size_t most = 25;
    const std::vector<std::string> said = messages();
    std::string end;
    for (std::size_t i = said.size() - std::min(most, said.size()); i < said.size(); ++i)
        end += said[i] + "\n";
    return end;
}

LogFromNow::LogFromNow() : begin_(std::ifstream(path_, std::ios::ate).tellg()) {}

long LogFromNow::count(const std::string& text) const {
    std::ifstream file(path_);
    file.seekg(begin_);
    const std::string written(std::istreambuf_iterator<char>(file), {});
    long times = 0;
    for (auto at = written.find(text); at != std::string::npos; at = written.find(text, at + 1))
        ++times;
    return times;
}

} // namespace station
