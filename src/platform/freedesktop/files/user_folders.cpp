#include "platform/freedesktop/files/user_folders.h"

#include "platform/freedesktop/files/private_folder.h"
#include "platform/freedesktop/files/xdg_folders.h"

#include <cstdlib>
#include <filesystem>
#include <optional>

namespace brevlin {

namespace {

std::optional<std::string> environmentValue(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? std::optional<std::string>{value} : std::nullopt;
}

} // namespace

UserFolders userFolders()
{
    XdgEnvironment environment;
    environment.home = environmentValue("HOME");
    environment.dataHome = environmentValue("XDG_DATA_HOME");
    environment.configHome = environmentValue("XDG_CONFIG_HOME");
    std::error_code ignored;
    if (const auto temporary = std::filesystem::temp_directory_path(ignored); !temporary.empty()) {
        environment.temporaryFolder = temporary.string();
    }
    const XdgFolders folders = xdgFolders(environment);
    return {folders.data, folders.data + "/Brevlin", folders.config + "/Brevlin",
            folders.config + "/autostart",
            runtimeFolder(environmentValue("XDG_RUNTIME_DIR"), environment.temporaryFolder)};
}

} // namespace brevlin
