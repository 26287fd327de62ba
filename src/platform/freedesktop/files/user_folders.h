#pragma once

#include <optional>
#include <string>
#include <vector>

namespace brevlin {

/// Where the user's files live, absolute and without a slash at the end.
struct UserFolders
{
    std::string applicationSupport;      ///< the base folder for data of all programs
    std::string data;                    ///< ours in it
    std::string preferences;             ///< ours in the base folder for settings
    std::string autostart;               ///< entries of what the desktop starts at login
    std::optional<std::string> runtime;  ///< for sockets; nothing where there is no safe place
    std::vector<std::string> sharedData; ///< base folders for data, by precedence
};

/// As the environment says.
UserFolders userFolders();

} // namespace brevlin
