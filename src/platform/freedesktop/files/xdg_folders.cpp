#include "platform/freedesktop/files/xdg_folders.h"

#include <string_view>

namespace brevlin {

namespace {

bool isAbsolute(const std::optional<std::string>& path)
{
    return path && path->starts_with('/');
}

std::string withoutSlashAtEnd(std::string path)
{
    while (path.size() > 1 && path.ends_with('/')) {
        path.pop_back();
    }
    return path;
}

std::string baseFolder(const XdgEnvironment& environment, const std::optional<std::string>& chosen,
                       std::string_view belowHome)
{
    if (isAbsolute(chosen)) {
        return withoutSlashAtEnd(*chosen);
    }
    if (isAbsolute(environment.home)) {
        return withoutSlashAtEnd(*environment.home + std::string(belowHome));
    }
    return withoutSlashAtEnd(environment.temporaryFolder);
}

} // namespace

XdgFolders xdgFolders(const XdgEnvironment& environment)
{
    return {baseFolder(environment, environment.dataHome, "/.local/share"),
            baseFolder(environment, environment.configHome, "/.config"),
            baseFolder(environment, environment.stateHome, "/.local/state")};
}

} // namespace brevlin
