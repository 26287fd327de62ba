#include "command/line/options.h"

#include <algorithm>

namespace brevlin {

std::optional<UsageError> readOptions(std::span<const std::string> arguments,
                                      const std::vector<CommandOption>& options,
                                      const std::function<bool(const std::string&)>& takeOther)
{
    bool areOver = false; // behind "--" all are names of files
    for (std::size_t index = 0; index < arguments.size(); ++index) {
        const std::string& argument = arguments[index];
        if (areOver || !argument.starts_with("-") || argument == "-") {
            if (!takeOther(argument)) {
                return UsageError{usageProblem::unknownArgument, argument};
            }
            continue;
        }
        if (argument == "--") {
            areOver = true;
            continue;
        }
        const std::size_t equals = std::min(argument.find('='), argument.size());
        const auto option = std::find_if(options.begin(), options.end(), [&](const CommandOption& candidate) {
            return candidate.name == argument.substr(0, equals);
        });
        if (option == options.end() || (!option->hasValue && equals < argument.size())) {
            return UsageError{usageProblem::unknownArgument, argument};
        }
        std::string value;
        if (option->hasValue && equals < argument.size()) {
            value = argument.substr(equals + 1);
        } else if (option->hasValue) {
            if (++index == arguments.size()) {
                return UsageError{usageProblem::missingValue, argument};
            }
            value = arguments[index];
        }
        if (!option->take(value)) {
            return UsageError{usageProblem::invalidValue,
                              option->hasValue ? argument.substr(0, equals) + " " + value : argument};
        }
    }
    return std::nullopt;
}

bool asksForHelp(std::span<const std::string> arguments)
{
    return std::any_of(arguments.begin(), std::find(arguments.begin(), arguments.end(), "--"),
                       [](const std::string& each) { return each == "--help" || each == "-h"; });
}

} // namespace brevlin
