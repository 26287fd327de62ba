#pragma once

#include "core/language.h"

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// What is wrong with the arguments, and the one that it is about.
struct UsageError
{
    BilingualText problem;
    std::string argument;
};

namespace usageProblem {
inline constexpr BilingualText unknownArgument{"无法识别的参数", "unknown argument"};
inline constexpr BilingualText missingValue{"缺少参数值", "a value is missing"};
inline constexpr BilingualText invalidValue{"参数值无效", "not a valid value"};
} // namespace usageProblem

/// One option of a command. Those with a value take it behind "=" or as the next argument.
struct CommandOption
{
    std::string_view name;
    std::function<bool(std::string_view)> take; ///< false for a value that is none
    bool hasValue = true;
};

/// Hands every argument to its option, and those that are none to `takeOther`, which is false for one too
/// many; behind "--" there are no options. Gives what is wrong, if anything.
std::optional<UsageError> readOptions(std::span<const std::string> arguments,
                                      const std::vector<CommandOption>& options,
                                      const std::function<bool(const std::string&)>& takeOther);

/// Whether "--help" or "-h" is among the options.
bool asksForHelp(std::span<const std::string> arguments);

} // namespace brevlin
