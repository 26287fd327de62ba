#include "command/run_command.h"

#include "command/commands.h"
#include "command/line/usage.h"

#include <QCoreApplication>

#include <csignal>
#include <string>
#include <variant>
#include <vector>

namespace brevlin {

ExitStatus fail(const BilingualText& sentence, std::string_view systemsWords, const CommandContext& context)
{
    complain(sentence.in(context.language), systemsWords);
    return ExitStatus::failed;
}

int runCommand(int& argumentCount, char** arguments)
{
    // A limit on the size of files, and a pipe that nobody reads any longer, are errors like any other.
    std::signal(SIGXFSZ, SIG_IGN);
    std::signal(SIGPIPE, SIG_IGN);
    const std::vector<std::string> words(arguments + (argumentCount > 0 ? 1 : 0), arguments + argumentCount);
    const Command command = parseCommand(words);
    const CommandContext context{userFolders(), messageLanguage()};
    ExitStatus status = ExitStatus::done;
    if (const auto* error = std::get_if<UsageError>(&command)) {
        status = complain(*error, context.language);
    } else if (const auto* toExport = std::get_if<ExportCommand>(&command)) {
        status = runExport(*toExport, context);
    } else if (const auto* toImport = std::get_if<ImportCommand>(&command)) {
        const QCoreApplication application(argumentCount, arguments);
        status = runImport(*toImport, context);
    } else {
        writeOut(usage(context.language));
    }
    return static_cast<int>(status);
}

} // namespace brevlin
