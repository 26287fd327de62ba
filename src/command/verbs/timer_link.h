#pragma once

#include "platform/freedesktop/socket/control_answer.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// What is asked of the running program: a word of controlWord or a verb of the timer, what belongs to it,
/// and the token of the user's action.
struct ControlRequest
{
    std::string word;
    std::vector<std::string> arguments;
    std::string token;
};

/// One way to the running program.
class TimerLink
{
public:
    virtual ~TimerLink() = default;

    /// Nothing where no program is there. Waits as long as a busy program may need.
    virtual std::optional<ControlAnswer> ask(const ControlRequest& request) = 0;
};

/// How long a program that is busy, or a bus that is silent, is waited for.
inline constexpr std::chrono::milliseconds linkPatience{3000};

} // namespace brevlin
