#pragma once

#include <optional>
#include <string>

namespace brevlin {

/// The values of the environment that decide where a user's files live.
struct XdgEnvironment
{
    std::optional<std::string> home;       ///< HOME
    std::optional<std::string> dataHome;   ///< XDG_DATA_HOME
    std::optional<std::string> configHome; ///< XDG_CONFIG_HOME
    std::optional<std::string> stateHome;  ///< XDG_STATE_HOME
    std::string temporaryFolder = "/tmp";
};

/// The base folders of the user, without a slash at the end.
struct XdgFolders
{
    std::string data;
    std::string config;
    std::string state;

    bool operator==(const XdgFolders&) const = default;
};

/// By https://specifications.freedesktop.org/basedir-spec/latest/: a value that is not an absolute path is
/// ignored. Without a home folder everything goes to the temporary one; QStandardPaths would then write below
/// the root of the file system.
XdgFolders xdgFolders(const XdgEnvironment& environment);

} // namespace brevlin
