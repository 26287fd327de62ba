#pragma once

#include "command/line/options.h"
#include "core/language.h"

#include <string_view>

namespace brevlin {

/// How a command ends. Results go to standard output, words to standard error.
enum class ExitStatus {
    done = 0,
    failed = 1, ///< or refused
    wrongUsage = 2,
    notRunning = 3,
};

/// False where the output wants no more; errno says why.
bool writeOut(std::string_view text);
/// One sentence on standard error, and behind it the system's words, which may be empty.
void complain(std::string_view sentence, std::string_view systemsWords = {});
/// What is wrong with the arguments, and how they should be.
ExitStatus complain(const UsageError& error, AppLanguage language);
/// Says that standard output could not be written. Who reads it may simply have had enough.
ExitStatus outputFailed(AppLanguage language);

} // namespace brevlin
