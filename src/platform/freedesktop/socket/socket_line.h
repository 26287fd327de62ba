#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

// The local socket of the running program: one line asks, one line answers.

/// By the folders that the program works on, so that programs of one user with different homes do not meet.
std::string programSocketPath(const std::string& runtimeFolder, const std::vector<std::string>& folders);

namespace socketAnswer {
inline constexpr const char* done = "ok";
inline constexpr const char* ending = "ending";   ///< which takes as long as the disk does
inline constexpr const char* refused = "refused"; ///< a command that the program does not know
} // namespace socketAnswer

/// The line that asks. The token is the one of the user's action and may be empty, and so may the action, for
/// which the window is shown; with arguments the action is a command.
std::string socketLine(std::string_view token, std::string_view action,
                       const std::vector<std::string>& arguments);

/// RFC 3986: all but letters, digits and "-._~" in hexadecimal.
std::string percentEncoded(std::string_view text);
std::string percentDecoded(std::string_view text);

} // namespace brevlin
