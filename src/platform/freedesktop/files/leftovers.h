#pragma once

#include <cstddef>
#include <string>

namespace brevlin {

/// A name for a temporary file that no other file has, recognised by removeLeftovers.
std::string makeTemporaryName();

/// Removes the temporary files that a crash or a power cut left in the folder, and beside the targets of its
/// symbolic links; tells how many. Only for the process that owns the folder, before its first write: what it
/// finds could otherwise be a write in progress.
std::size_t removeLeftovers(const std::string& folder);

} // namespace brevlin
