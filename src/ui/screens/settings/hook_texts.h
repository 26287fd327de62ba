#pragma once

#include "app/hook_caller.h"
#include "core/language.h"

#include <QString>

namespace brevlin {

/// Which program, and what it was told of.
QString hookSubject(const HookRecord& record, AppLanguage language);
/// How it ended, in a few words.
QString hookOutcome(const HookRecord& record, AppLanguage language);
/// The last lines of what it said, or why it did not run.
QString hookDetail(const HookRecord& record, AppLanguage language);
/// Whether the user may want to know.
bool isFailure(const HookRecord& record);

} // namespace brevlin
