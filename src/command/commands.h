#pragma once

#include "command/command_line.h"
#include "platform/freedesktop/files/user_folders.h"

#include <string>
#include <string_view>

namespace brevlin {

/// What a command works with. Its results go to standard output, words to standard error.
struct CommandContext
{
    UserFolders folders;
    AppLanguage language = AppLanguage::english;
};

enum class ExitStatus { done = 0, failed = 1, wrongUsage = 2 };

ExitStatus runExport(const ExportCommand& command, const CommandContext& context);
/// Needs the Qt Core application object.
ExitStatus runImport(const ImportCommand& command, const CommandContext& context);

/// False where the output wants no more; errno says why.
bool writeOut(std::string_view text);
/// One sentence, and behind it the system's words, which may be empty.
ExitStatus fail(const BilingualText& sentence, std::string_view systemsWords, const CommandContext& context);

} // namespace brevlin
