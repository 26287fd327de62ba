#pragma once

#include "core/expected.h"
#include "core/instant.h"
#include "platform/durable_file.h"
#include "platform/user_defaults.h"

#include <string>

namespace brevlin {

// A document that could not be read may still be worth something to its owner, or to a later release. Before
// anything replaces it, it is renamed to "<name>.unreadable-<UTC time>", with "-2", "-3" and so on where that
// name is taken. Nothing is lost as long as callers give up their write when this fails. No error when there
// is nothing to set aside (any more).

/// For a path that ends in an extension, which stays at the end.
Expected<void, FileError> setAsideFile(DurableFile& files, const std::string& path, Instant now);
Expected<void, FileError> setAsideValue(UserDefaults& defaults, const std::string& key, Instant now);

/// For file names, in UTC: "20260131T235959Z".
std::string fileNameTime(Instant instant);

} // namespace brevlin
