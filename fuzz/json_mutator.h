#pragma once

// libFuzzer does not see into the JSON library, and nearly every mutation of a document's bytes is no JSON
// any more: it would test the library's refusal alone. So most mutations replace, remove or double a whole
// token. https://llvm.org/docs/LibFuzzer.html,
// https://github.com/google/fuzzing/blob/master/docs/structure-aware-fuzzing.md

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace brevlin::fuzz {

inline constexpr std::array<std::string_view, 26> values{"null",
                                                         "true",
                                                         "false",
                                                         "0",
                                                         "-1",
                                                         "1",
                                                         "4.0",
                                                         "1e2",
                                                         "0.1",
                                                         "1e308",
                                                         "-1.7e308",
                                                         "1e400",
                                                         "5e-324",
                                                         "9223372036854775807",
                                                         "-9223372036854775808",
                                                         "9223372036854775808",
                                                         "4294967296",
                                                         "100001",
                                                         "\"\"",
                                                         "\"running\"",
                                                         "\"paused\"",
                                                         "\"ringing\"",
                                                         "\"\\ud83d\\ude00\"",
                                                         "\"\\ud83d\"",
                                                         "[]",
                                                         "{}"};

/// Splits into strings, words and punctuation; together they are the text again.
inline std::vector<std::string> tokensOf(std::string_view text)
{
    std::vector<std::string> tokens;
    constexpr std::string_view punctuation = "{}[],:";
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at + 1;
        if (text[at] == '"') {
            while (end < text.size() && text[end] != '"') {
                end += text[end] == '\\' ? 2 : 1;
            }
            end = std::min(end + 1, text.size());
        } else if (punctuation.find(text[at]) == std::string_view::npos) {
            end = std::min(text.find_first_of("{}[],:\"", at), text.size());
        }
        tokens.emplace_back(text.substr(at, end - at));
        at = end;
    }
    return tokens;
}

inline std::size_t mutateJson(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    std::minstd_rand dice(seed);
    auto tokens = tokensOf({reinterpret_cast<const char*>(data), size});
    if (tokens.empty() || dice() % 4 == 0) {
        return LLVMFuzzerMutate(data, size, maxSize);
    }
    const std::size_t at = dice() % tokens.size();
    const auto place = tokens.begin() + static_cast<std::ptrdiff_t>(at);
    switch (dice() % 4) {
    case 0: { // another member, or one less
        const std::size_t count = std::min<std::size_t>(4, tokens.size() - at);
        const std::vector<std::string> member(place, place + static_cast<std::ptrdiff_t>(count));
        dice() % 2 == 0 ? (void)tokens.erase(place, place + static_cast<std::ptrdiff_t>(count))
                        : (void)tokens.insert(place, member.begin(), member.end());
        break;
    }
    case 1:
        tokens[at] = tokens[dice() % tokens.size()];
        break;
    default: // the value behind a colon, mostly
        for (std::size_t next = at; next + 1 < tokens.size(); ++next) {
            if (tokens[next] == ":") {
                tokens[next + 1] = values.at(dice() % values.size());
                break;
            }
        }
    }
    std::string text;
    for (const std::string& token : tokens) {
        text += token;
    }
    text.resize(std::min(text.size(), maxSize));
    std::copy(text.begin(), text.end(), data);
    return text.size();
}

} // namespace brevlin::fuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                               unsigned seed)
{
    return brevlin::fuzz::mutateJson(data, size, maxSize, seed);
}
