#include "application_log.h"

#include <algorithm>
#include <fstream>
#include <glib.h>

namespace simulator {

void ApplicationLog::skip() { begin_ = std::ifstream(path_, std::ios::ate).tellg(); }

std::vector<std::string> ApplicationLog::lines() const {
    std::vector<std::string> lines;
    std::ifstream file(path_);
    file.seekg(begin_);
    for (std::string line; std::getline(file, line);)
        lines.push_back(line);
    return lines;
}

std::vector<std::string> ApplicationLog::messages() const {
    // Matches bytes, since logged text need not be UTF-8. Socat writes no line feeds, so a message may begin inside a
    // line.
    static GRegex* const pattern =
        g_regex_new(R"(([EWI])/(?:VELMORA\(\d+\): )?(PLATFORM|\w+\.cpp: \w+)\(\d+\)(?: >|:) (.*))",
                    G_REGEX_RAW, G_REGEX_MATCH_DEFAULT, nullptr);
    std::vector<std::string> messages;
    for (const std::string& line : lines()) {
        g_autoptr(GMatchInfo) match = nullptr;
        if (g_regex_match(pattern, line.c_str(), G_REGEX_MATCH_DEFAULT, &match) == FALSE)
            continue;
        g_autofree char* message = g_match_info_expand_references(match, R"(\1 \2 > \3)", nullptr);
        messages.emplace_back(message);
    }
    return messages;
}

long ApplicationLog::count(const std::string& text) const {
    return std::ranges::count_if(
        messages(), [&text](const std::string& message) { return message.find(text) != std::string::npos; });
}

std::vector<std::string> ApplicationLog::library_warnings() const {
    // Ignores two warnings: EFL was still registering for accessibility at exit, or drew too slowly (a busy machine).
    constexpr auto warning =
        R"((CRI|ERR|WRN)<\d+>(?!.*(Canceled by user|timeout waiting for async rendering))|-(ERROR|CRITICAL|WARNING) \*\*)";
    std::vector<std::string> warnings = lines();
    std::erase_if(warnings, [](const std::string& line) {
        return g_regex_match_simple(warning, line.c_str(), G_REGEX_RAW, G_REGEX_MATCH_DEFAULT) == FALSE;
    });
    return warnings;
}

} // namespace simulator
