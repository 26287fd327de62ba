#include "platform/freedesktop/files/user_folders.h"

#include "platform/freedesktop/files/private_folder.h"
#include "platform/freedesktop/files/xdg_folders.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
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

// Below one folder for the state there may be histories in several folders, and none is to meet the copies of
// another. The usual one has a plain name, which stays when the home folder moves.
std::string backupName(const XdgEnvironment& environment, const std::string& data)
{
    XdgEnvironment usual = environment;
    usual.dataHome.reset();
    if (data == xdgFolders(usual).data) {
        return "default";
    }
    // FNV-1a, https://datatracker.ietf.org/doc/html/draft-eastlake-fnv
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char each : data) {
        hash = (hash ^ static_cast<unsigned char>(each)) * 0x100000001b3;
    }
    std::string name(17, '\0');
    std::snprintf(name.data(), name.size(), "%016" PRIx64, hash);
    name.pop_back();
    return name;
}

} // namespace

UserFolders userFolders()
{
    XdgEnvironment environment;
    environment.home = environmentValue("HOME");
    environment.dataHome = environmentValue("XDG_DATA_HOME");
    environment.configHome = environmentValue("XDG_CONFIG_HOME");
    std::error_code ignored;
    environment.stateHome = environmentValue("XDG_STATE_HOME");
    if (const auto temporary = std::filesystem::temp_directory_path(ignored); !temporary.empty()) {
        environment.temporaryFolder = temporary.string();
    }
    const XdgFolders folders = xdgFolders(environment);
    return {folders.data,
            folders.data + "/Brevlin",
            folders.config + "/Brevlin",
            folders.state + "/Brevlin/backups/" + backupName(environment, folders.data),
            folders.config + "/autostart",
            runtimeFolder(environmentValue("XDG_RUNTIME_DIR"), environment.temporaryFolder)};
}

} // namespace brevlin
