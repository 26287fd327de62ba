#pragma once

#include "command/command_line.h"
#include "core/language.h"
#include "exchange/history_import.h"

#include <QByteArray>
#include <QStringList>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brevlin {

/// What became of an import, or would become of it.
struct ImportReport
{
    std::size_t newCount = 0;
    std::size_t knownCount = 0;
    std::size_t unreadableCount = 0;
    std::vector<UnreadableRow> unreadable; ///< the first of them

    ImportReport() = default;
    explicit ImportReport(const ImportPlan& plan);
    bool operator==(const ImportReport&) const = default;
};

/// "New: 12. …", for standard output.
std::string summary(const ImportReport& report, bool isDryRun, AppLanguage language);
/// A line for each unreadable row, for standard error.
std::string unreadableRows(const ImportReport& report, AppLanguage language);

// How the command asks the running program, and its answer: the name of the command on its socket, its
// arguments, and one line back.

inline constexpr const char* importCommandName = "import";

QStringList importArguments(const ImportCommand& command);
/// Nothing for arguments that are none of ours. The path is absolute.
std::optional<ImportCommand> importCommand(const QStringList& arguments);

using ImportAnswer = Expected<ImportReport, ImportError>;
QByteArray importAnswerLine(const ImportAnswer& answer);
std::optional<ImportAnswer> importAnswer(const QByteArray& line);

} // namespace brevlin
