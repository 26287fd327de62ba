#include "platform/freedesktop/files/private_folder.h"

#include "platform/freedesktop/files/file_descriptor.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <utility>

namespace brevlin {

namespace {

bool isPrivate(const struct stat& status)
{
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    return S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() && (status.st_mode & others) == 0;
}

} // namespace

Expected<void, FileError> makePrivateFolder(const std::string& path)
{
    if (::mkdir(path.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        return Unexpected{lastFileError("mkdir", path)};
    }
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0) {
        return Unexpected{lastFileError("stat", path)};
    }
    if (S_ISLNK(status.st_mode)) {
        return Unexpected{fileError("open", ELOOP, path)};
    }
    return isPrivate(status) ? Expected<void, FileError>{} : Unexpected{fileError("open", EPERM, path)};
}

std::optional<std::string> runtimeFolder(const std::optional<std::string>& configured,
                                         const std::string& temporaryFolder)
{
    struct stat status = {};
    if (configured && configured->starts_with('/') && ::stat(configured->c_str(), &status) == 0 &&
        isPrivate(status)) {
        return configured;
    }
    std::string own = temporaryFolder + "/brevlin-" + std::to_string(::geteuid());
    return makePrivateFolder(own) ? std::optional{std::move(own)} : std::nullopt;
}

} // namespace brevlin
