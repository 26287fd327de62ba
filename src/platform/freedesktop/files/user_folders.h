#pragma once

#include <optional>
#include <string>

namespace brevlin {

/// Where the user's files live, absolute and without a slash at the end.
struct UserFolders
{
    std::string applicationSupport;     ///< the base folder for data of all programs
    std::string data;                   ///< ours in it
    std::string preferences;            ///< ours in the base folder for settings
    std::string backups;                ///< of this history; another one has another folder
    std::string autostart;              ///< entries of what the desktop starts at login
    std::optional<std::string> runtime; ///< for sockets; nothing where there is no safe place
};

/// As the environment says.
UserFolders userFolders();

} // namespace brevlin
