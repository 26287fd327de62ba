#include "command/run_command.h"

#include "command/commands.h"

#include <QCoreApplication>

#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

namespace brevlin {

namespace {

void sayUsage(const UsageError& error, AppLanguage language)
{
    const std::string text = "brevlin: " + std::string(error.problem.in(language)) +
                             (language == AppLanguage::english ? ": " : "：") + error.argument + "\n" +
                             std::string(usage(language));
    std::fputs(text.c_str(), stderr);
}

} // namespace

bool writeOut(std::string_view text)
{
    while (!text.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        text.remove_prefix(written > 0 ? static_cast<std::size_t>(written) : 0);
    }
    return true;
}

ExitStatus fail(const BilingualText& sentence, std::string_view systemsWords, const CommandContext& context)
{
    std::string text = "brevlin: " + std::string(sentence.in(context.language));
    if (!systemsWords.empty()) {
        text += " (" + std::string(systemsWords) + ")";
    }
    std::fprintf(stderr, "%s\n", text.c_str());
    return ExitStatus::failed;
}

std::optional<int> runCommand(int& argumentCount, char** arguments)
{
    const std::vector<std::string> words(arguments + (argumentCount > 0 ? 1 : 0), arguments + argumentCount);
    const auto command = parseCommand(words);
    if (!command) {
        return std::nullopt;
    }
    std::signal(SIGPIPE, SIG_IGN); // a pipe that nobody reads any longer is an error like any other
    const CommandContext context{userFolders(), messageLanguage()};
    ExitStatus status = ExitStatus::done;
    if (const auto* error = std::get_if<UsageError>(&*command)) {
        sayUsage(*error, context.language);
        status = ExitStatus::wrongUsage;
    } else if (const auto* toExport = std::get_if<ExportCommand>(&*command)) {
        status = runExport(*toExport, context);
    } else if (const auto* toImport = std::get_if<ImportCommand>(&*command)) {
        const QCoreApplication application(argumentCount, arguments);
        status = runImport(*toImport, context);
    } else {
        writeOut(usage(context.language));
    }
    return static_cast<int>(status);
}

} // namespace brevlin
