#include "platform/freedesktop/instance/folder_lock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace brevlin {

namespace {

void createFolder(const std::string& path)
{
    std::error_code ignored; // a folder that cannot be made cannot be written by anybody else either
    std::filesystem::create_directories(std::filesystem::path{path}.parent_path(), ignored);
    mkdir(path.c_str(), S_IRWXU);
}

// Where everybody may write, somebody else may have put a folder or a link in the way.
bool isInStrangersHands(const std::string& path, const struct stat& folder)
{
    const std::string parent = std::filesystem::path{path}.parent_path().string();
    struct stat status = {};
    if (stat(parent.c_str(), &status) != 0 || (status.st_mode & S_IWOTH) == 0) {
        return false;
    }
    const bool isLink = lstat(path.c_str(), &status) != 0 || S_ISLNK(status.st_mode);
    constexpr mode_t others = S_IRWXG | S_IRWXO;
    return isLink || folder.st_uid != geteuid() || (folder.st_mode & others) != 0;
}

} // namespace

FolderLock::Result FolderLock::take()
{
    release();
    Result result = Result::taken;
    for (const std::string& folder : m_folders) {
        if (result == Result::taken) {
            result = lock(folder);
        }
    }
    return result;
}

void FolderLock::release()
{
    for (const int descriptor : std::exchange(m_descriptors, {})) {
        close(descriptor);
    }
}

FolderLock::Result FolderLock::lock(const std::string& folder)
{
    createFolder(folder);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return Result::taken; // nobody can write there
    }
    m_descriptors.push_back(descriptor);
    struct stat status = {};
    fstat(descriptor, &status);
    if (isInStrangersHands(folder, status)) {
        m_failure = folder + ": " + std::generic_category().message(EPERM);
        return Result::failed;
    }
    // Two descriptors of one folder would shut each other out.
    const bool isLocked = std::any_of(m_descriptors.begin(), m_descriptors.end() - 1, [&](int other) {
        struct stat otherStatus = {};
        fstat(other, &otherStatus);
        return otherStatus.st_dev == status.st_dev && otherStatus.st_ino == status.st_ino;
    });
    if (isLocked) {
        return Result::taken;
    }
    // The kernel lets go of it however the process ends. QLockFile would leave a file in the user's folder,
    // and takes a lock for forsaken by the number of a process that another machine or container may have.
    int locked = 0;
    do {
        locked = flock(descriptor, LOCK_EX | LOCK_NB);
    } while (locked != 0 && errno == EINTR);
    if (locked == 0) {
        return Result::taken;
    }
    if (errno == EWOULDBLOCK) {
        return Result::held;
    }
    m_failure = folder + ": " + std::generic_category().message(errno) + " (flock)";
    return Result::failed;
}

} // namespace brevlin
