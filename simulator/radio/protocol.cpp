#include "radio/protocol.h"

#include <array>
#include <sstream>
#include <unistd.h>

namespace simulator {
namespace {

constexpr std::size_t longest_line = 512;

} // namespace

std::string to_line(const RadioRequest& request) {
    const std::string argument = request.argument ? " " + std::to_string(*request.argument) : "";
    return "> " + std::to_string(request.number) + " " + request.command + argument + "\n";
}

std::string to_line(const RadioAnswer& answer) {
    const std::string text = answer.text.empty() ? "" : " " + answer.text;
    return "< " + std::to_string(answer.number) + " " + std::to_string(answer.code) + text + "\n";
}

std::optional<RadioRequest> parse_request(const std::string& line) {
    std::istringstream words(line);
    std::string mark;
    RadioRequest request;
    if (!(words >> mark >> request.number >> request.command) || mark != ">")
        return std::nullopt;
    int argument = 0;
    if (words >> argument)
        request.argument = argument;
    else if (!words.eof())
        return std::nullopt;
    return request;
}

std::optional<RadioAnswer> parse_answer(const std::string& line) {
    std::istringstream words(line);
    std::string mark;
    RadioAnswer answer;
    if (!(words >> mark >> answer.number >> answer.code) || mark != "<")
        return std::nullopt;
    words >> std::ws;
    std::getline(words, answer.text);
    return answer;
}

void LineBuffer::append(std::string_view bytes) {
    waiting_.append(bytes);
    const auto last_end = waiting_.rfind('\n');
    const auto unfinished = last_end == std::string::npos ? 0 : last_end + 1;
    if (waiting_.size() - unfinished > longest_line)
        waiting_.resize(unfinished);
}

ssize_t LineBuffer::read_from(int descriptor) {
    std::array<char, longest_line> bytes{};
    const auto count = read(descriptor, bytes.data(), bytes.size());
    if (count > 0)
        append({bytes.data(), static_cast<std::size_t>(count)});
    return count;
}

std::optional<std::string> LineBuffer::next() {
    const auto end = waiting_.find('\n');
    if (end == std::string::npos)
        return std::nullopt;
    auto line = waiting_.substr(0, end);
    waiting_.erase(0, end + 1);
    return line;
}

} // namespace simulator
