#pragma once

#include "command/command_line.h"
#include "command/line/output.h"
#include "platform/freedesktop/files/user_folders.h"

#include <string>
#include <string_view>

namespace brevlin {

/// What a command works with.
struct CommandContext
{
    UserFolders folders;
    AppLanguage language = AppLanguage::english;
};

ExitStatus runExport(const ExportCommand& command, const CommandContext& context);
/// Needs the Qt Core application object.
ExitStatus runImport(const ImportCommand& command, const CommandContext& context);

/// One sentence, and behind it the system's words, which may be empty.
ExitStatus fail(const BilingualText& sentence, std::string_view systemsWords, const CommandContext& context);

} // namespace brevlin
