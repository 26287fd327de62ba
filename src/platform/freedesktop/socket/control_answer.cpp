#include "platform/freedesktop/socket/control_answer.h"

#include "platform/freedesktop/socket/socket_line.h"

#include <algorithm>
#include <charconv>
#include <vector>

namespace brevlin {

namespace {

constexpr char separator = '\t';
constexpr const char* refusedMark = "no";
constexpr const char* statusMark = "status";

std::vector<std::string_view> parts(std::string_view line)
{
    std::vector<std::string_view> result;
    for (std::size_t begin = 0; begin <= line.size();) {
        const std::size_t end = std::min(line.find(separator, begin), line.size());
        result.push_back(line.substr(begin, end - begin));
        begin = end + 1;
    }
    return result;
}

} // namespace

std::string controlAnswerLine(const ControlAnswer& answer)
{
    const std::string text = percentEncoded(answer.text);
    switch (answer.kind) {
    case ControlAnswer::Kind::done:
        return std::string(socketAnswer::done) + '\n';
    case ControlAnswer::Kind::refused:
        return refusedMark + (separator + text) + '\n';
    case ControlAnswer::Kind::status:
        return statusMark + (separator + std::to_string(answer.revision)) + separator + answer.language +
               separator + text + '\n';
    case ControlAnswer::Kind::unknown:
        break;
    }
    return std::string(socketAnswer::refused) + '\n';
}

ControlAnswer controlAnswer(std::string_view line)
{
    if (line.ends_with('\n')) {
        line.remove_suffix(1);
    }
    const std::vector<std::string_view> words = parts(line);
    ControlAnswer answer;
    if (words.front() == socketAnswer::done) {
        answer.kind = ControlAnswer::Kind::done;
    } else if (words.front() == refusedMark && words.size() == 2) {
        answer.kind = ControlAnswer::Kind::refused;
        answer.text = percentDecoded(words[1]);
    } else if (words.front() == statusMark && words.size() == 4) {
        answer.kind = ControlAnswer::Kind::status;
        std::from_chars(words[1].data(), words[1].data() + words[1].size(), answer.revision);
        answer.language = words[2];
        answer.text = percentDecoded(words[3]);
    }
    return answer;
}

} // namespace brevlin
