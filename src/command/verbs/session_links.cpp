#include "command/verbs/session_links.h"

#include "platform/freedesktop/files/user_folders.h"
#include "platform/freedesktop/socket/socket_line.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

namespace brevlin {

namespace {

UserFolders foldersOfSession()
{
    if (std::getenv("XDG_RUNTIME_DIR") == nullptr) {
        const std::string folder = "/run/user/" + std::to_string(::getuid());
        struct stat found
        {};
        if (::stat(folder.c_str(), &found) == 0 && found.st_uid == ::getuid()) {
            ::setenv("XDG_RUNTIME_DIR", folder.c_str(), 0);
        }
    }
    return userFolders();
}

std::string socketPath(const UserFolders& folders)
{
    return folders.runtime ? programSocketPath(*folders.runtime, {folders.data, folders.preferences})
                           : std::string();
}

} // namespace

SessionLinks::SessionLinks() : m_socket(std::string())
{
    const UserFolders folders = foldersOfSession();
    m_socketFolder = folders.runtime.value_or(std::string());
    m_socket = SocketLink(socketPath(folders));
    m_bus = BusLink::open(sessionBusCandidates());
    if (m_bus) {
        ::setenv("DBUS_SESSION_BUS_ADDRESS", m_bus->address().c_str(), 1);
    }
}

std::optional<ControlAnswer> SessionLinks::ask(const ControlRequest& request)
{
    if (m_bus) {
        if (auto answer = m_bus->ask(request)) {
            return answer;
        }
    }
    return m_socket.ask(request);
}

} // namespace brevlin
