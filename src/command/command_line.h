#pragma once

#include "command/line/options.h"
#include "exchange/history_export.h"
#include "exchange/history_import.h"

#include <optional>
#include <span>
#include <string>
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

using Command = std::variant<ExportCommand, ImportCommand, HelpCommand, UsageError>;

/// What the arguments behind the program's name ask for.
Command parseCommand(std::span<const std::string> arguments);

} // namespace brevlin
