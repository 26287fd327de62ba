#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace brevlin {

/// The command on the program's socket that drives the timer. Its first argument is a verb of the timer or
/// one of the words below; then comes what belongs to it.
inline constexpr const char* controlCommandName = "control";

namespace controlWord {
inline constexpr std::string_view status = "status";
inline constexpr std::string_view await = "await"; ///< a revision: the status, once it is not that one
inline constexpr std::string_view intention = "intention";
inline constexpr std::string_view show = "show"; ///< a section and a token
inline constexpr std::string_view quit = "quit";
} // namespace controlWord

/// What is answered to it.
struct ControlAnswer
{
    enum class Kind {
        done,
        refused, ///< there was nothing to do; the text says why
        status,
        unknown ///< no answer of ours, or from a program that ends or knows no such word
    };

    Kind kind = Kind::unknown;
    std::string text;           ///< of a status: its JSON
    std::string language;       ///< of a status: the user's, as a language tag
    std::uint64_t revision = 0; ///< of a status: counts its changes but for the time that passes
};

std::string controlAnswerLine(const ControlAnswer& answer);
ControlAnswer controlAnswer(std::string_view line);

} // namespace brevlin
