#include "platform/freedesktop/socket/socket_line.h"

#include <cctype>
#include <charconv>
#include <cinttypes>
#include <cstdint>
#include <cstdio>

namespace brevlin {

namespace {

// Between the token, the action and the arguments. In these it is written in hexadecimal, as line breaks are.
constexpr char separator = '\t';

bool isPlain(char each)
{
    return std::isalnum(static_cast<unsigned char>(each)) != 0 ||
           std::string_view("-._~").find(each) != std::string_view::npos;
}

} // namespace

std::string programSocketPath(const std::string& runtimeFolder, const std::vector<std::string>& folders)
{
    // FNV-1a, https://datatracker.ietf.org/doc/html/draft-eastlake-fnv
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const std::string& folder : folders) {
        for (const char each : folder + '\n') {
            hash = (hash ^ static_cast<unsigned char>(each)) * 0x100000001b3;
        }
    }
    constexpr std::size_t digits = 16;
    std::string name(digits + 1, '\0');
    std::snprintf(name.data(), name.size(), "%016" PRIx64, hash);
    name.pop_back();
    return runtimeFolder + "/brevlin-" + name;
}

std::string socketLine(std::string_view token, std::string_view action,
                       const std::vector<std::string>& arguments)
{
    std::string line(token);
    if (!action.empty()) {
        line += separator;
        line += action;
    }
    for (const std::string& argument : arguments) {
        line += separator;
        line += percentEncoded(argument);
    }
    return line + '\n';
}

std::string percentEncoded(std::string_view text)
{
    static constexpr std::string_view hexadecimal = "0123456789ABCDEF";
    std::string result;
    for (const char each : text) {
        if (isPlain(each)) {
            result += each;
        } else {
            const auto byte = static_cast<unsigned char>(each);
            result += '%';
            result += hexadecimal[byte >> 4U];
            result += hexadecimal[byte & 0xFU];
        }
    }
    return result;
}

std::string percentDecoded(std::string_view text)
{
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        unsigned byte = 0;
        if (text[index] == '%' && index + 2 < text.size() &&
            std::from_chars(&text[index + 1], &text[index + 1] + 2, byte, 16).ptr == &text[index + 1] + 2) {
            result += static_cast<char>(byte);
            index += 2;
        } else {
            result += text[index];
        }
    }
    return result;
}

} // namespace brevlin
