#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brevlin {

/// The WAV file that a sound theme of the desktop has under this name
/// (https://specifications.freedesktop.org/sound-theme-spec/): the named theme first, then "freedesktop", in
/// each of the data folders in turn. Nothing where no theme has it.
std::optional<std::string> themeSoundFile(const std::vector<std::string>& dataFolders,
                                          const std::string& theme, const std::string& name);

} // namespace brevlin
