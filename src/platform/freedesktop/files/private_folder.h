#pragma once

#include "core/expected.h"
#include "platform/durable_file.h"

#include <optional>
#include <string>

namespace brevlin {

/// Makes the folder (0700) where it is missing. Refuses what is there unless it is a folder of this user that
/// nobody else may enter: where everybody may write, somebody else may have put a folder or a link in the
/// way.
Expected<void, FileError> makePrivateFolder(const std::string& path);

/// Where sockets go: $XDG_RUNTIME_DIR if it is a folder of this user alone, else one of our own in the
/// temporary folder; nothing where a stranger's stands in its place.
std::optional<std::string> runtimeFolder(const std::optional<std::string>& configured,
                                         const std::string& temporaryFolder);

} // namespace brevlin
