#include "application_log.h"

#include <algorithm>
#include <fstream>
#include <glib.h>
#include <iterator>
#include <memory>

namespace simulator {
namespace {

using Regex = std::unique_ptr<GRegex, decltype(&g_regex_unref)>;

/** A regular expression over bytes, since logged text need not be UTF-8. */
Regex regex(const char* text) {
    return {g_regex_new(text, static_cast<GRegexCompileFlags>(G_REGEX_RAW | G_REGEX_OPTIMIZE),
                        G_REGEX_MATCH_DEFAULT, nullptr),
            g_regex_unref};
}

std::vector<std::string> lines_of(const std::string& path, std::streamoff begin) {
    std::vector<std::string> lines;
    std::ifstream file(path);
    file.seekg(begin);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

} // namespace

std::vector<std::string> ApplicationLog::messages() const {
    // The radio programs write to the same file, socat without line feeds, so a message may begin inside a line.
    static const Regex message =
        regex(R"(([EWI])/(VELMORA\(\d+\): (\w+\.cpp: \w+)\(\d+\) >|PLATFORM\(\d+\):) (.*))");
    static const Regex failed_status = regex(R"(nRet\[-\d+\])");
    std::vector<std::string> messages;
    for (const std::string& line : lines_of(path_, begin_)) {
        g_autoptr(GMatchInfo) match = nullptr;
        if (g_regex_match(message.get(), line.c_str(), G_REGEX_MATCH_DEFAULT, &match) == FALSE)
            continue;
        g_auto(GStrv) parts = g_match_info_fetch_all(match);
        g_autofree char* text = g_regex_replace_literal(failed_status.get(), parts[4], -1, 0, "nRet[-N]",
                                                        G_REGEX_MATCH_DEFAULT, nullptr);
        messages.push_back(std::string(parts[1]) + " " + (*parts[3] == '\0' ? "platform" : parts[3]) + " > " +
                           text);
    }
    return messages;
}

long ApplicationLog::count(const std::string& text) const {
    return std::ranges::count_if(
        messages(), [&text](const std::string& message) { return message.find(text) != std::string::npos; });
}

std::vector<std::string> ApplicationLog::library_warnings() const {
    // EFL's accessibility warns if a process exits while it registers, and its canvas if the machine is busy.
    static const Regex complaint = regex(
        R"((CRI|ERR|WRN)<\d+>(?!.*(Canceled by user|timeout waiting for async rendering))|-(ERROR|CRITICAL|WARNING) \*\*)");
    std::vector<std::string> lines = lines_of(path_, begin_);
    std::erase_if(lines, [](const std::string& line) {
        return g_regex_match(complaint.get(), line.c_str(), G_REGEX_MATCH_DEFAULT, nullptr) == FALSE;
    });
    return lines;
}

LogFromNow::LogFromNow() { begin_ = std::ifstream(path_, std::ios::ate).tellg(); }

} // namespace simulator
