#pragma once

#include "core/language.h"
#include "exchange/history_export.h"
#include "exchange/history_import.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace brevlin {

struct ExportCommand
{
    ExportFormat format = ExportFormat::csv;
    ExportSelection selection;
    bool hasByteOrderMark = false;
    std::optional<std::string> output; ///< none: standard output
};

struct ImportCommand
{
    std::string file;
    std::optional<ImportFormat> format;
    bool isDryRun = false;
};

struct HelpCommand
{};

/// What is wrong with the arguments, and the one that it is about.
struct UsageError
{
    BilingualText problem;
    std::string argument;
};

using Command = std::variant<ExportCommand, ImportCommand, HelpCommand, UsageError>;

/// What the arguments behind the program's name ask for; nothing where they ask for no command, so that the
/// program itself is to start.
std::optional<Command> parseCommand(std::span<const std::string> arguments);

std::string_view usage(AppLanguage language);
/// Of the messages, as the environment says.
AppLanguage messageLanguage();

} // namespace brevlin
