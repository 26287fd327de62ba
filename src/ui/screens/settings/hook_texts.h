#pragma once

#include "app/hook_caller.h"
#include "core/language.h"

#include <QString>

namespace brevlin {

/// Which program, and what it was told of.
QString hookSubject(const HookRecord& record, AppLanguage language);
/// How it ended, in a few words.
QString hookOutcome(const HookRecord& record, AppLanguage language);
/// The last lines of what it said; empty where it said nothing.
QString hookOutput(const HookRecord& record);
/// Whether the user may want to know.
bool isFailure(const HookRecord& record);

} // namespace brevlin
