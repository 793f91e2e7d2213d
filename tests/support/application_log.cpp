#include "application_log.h"

#include <algorithm>
#include <fstream>
#include <glib.h>
#include <iterator>
#include <memory>

namespace simulator {
namespace {

/** A regular expression over bytes: what is logged need not be UTF-8. */
class Expression {
public:
    explicit Expression(const char* text)
        : regex_(g_regex_new(text, G_REGEX_RAW, G_REGEX_MATCH_DEFAULT, nullptr), g_regex_unref) {}

    [[nodiscard]] bool matches(const std::string& line) const {
        return g_regex_match(regex_.get(), line.c_str(), G_REGEX_MATCH_DEFAULT, nullptr) != FALSE;
    }

    /** What the first match and its groups hold; nothing if there is none. */
    [[nodiscard]] std::vector<std::string> groups(const std::string& line) const {
        g_autoptr(GMatchInfo) match = nullptr;
        g_regex_match(regex_.get(), line.c_str(), G_REGEX_MATCH_DEFAULT, &match);
        g_auto(GStrv) parts = g_match_info_fetch_all(match);
        return parts == nullptr ? std::vector<std::string>{}
                                : std::vector<std::string>(parts, parts + g_strv_length(parts));
    }

    [[nodiscard]] std::string replaced(const std::string& line, const char* by) const {
        g_autofree char* text =
            g_regex_replace_literal(regex_.get(), line.c_str(), -1, 0, by, G_REGEX_MATCH_DEFAULT, nullptr);
        return text;
    }

private:
    std::unique_ptr<GRegex, decltype(&g_regex_unref)> regex_;
};

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
    static const Expression message(
        R"(([EWI])/(VELMORA\(\d+\): (\w+\.cpp: \w+)\(\d+\) >|PLATFORM\(\d+\):) (.*))");
    static const Expression failed_status(R"(nRet\[-\d+\])");
    std::vector<std::string> messages;
    for (const std::string& line : lines_of(path_)) {
        const std::vector<std::string> parts = message.groups(line);
        if (!parts.empty())
            messages.push_back(parts[1] + " " + (parts[3].empty() ? "platform" : parts[3]) + " > " +
                               failed_status.replaced(parts[4], "nRet[-N]"));
    }
    return messages;
}

long ApplicationLog::count(const std::string& text) const {
    return std::ranges::count_if(
        messages(), [&text](const std::string& message) { return message.find(text) != std::string::npos; });
}

std::vector<std::string> ApplicationLog::complaints_of_libraries() const {
    // EFL complains of a process that ends while it announces itself to the accessibility bus, and of a slow rendering.
    static const Expression complaint(
        R"((CRI|ERR|WRN)<\d+>(?!.*(Canceled by user|timeout waiting for async rendering))|-(ERROR|CRITICAL|WARNING) \*\*)");
    std::vector<std::string> lines = lines_of(path_);
    std::erase_if(lines, [](const std::string& line) { return !complaint.matches(line); });
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

} // namespace simulator
