#include "platform/freedesktop/files/file_descriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace brevlin {

FileError lastFileError(std::string operation, const std::string& path)
{
    return fileError(std::move(operation), errno, path);
}

FileError fileError(std::string operation, int code, const std::string& path)
{
    return {std::move(operation), code, std::generic_category().message(code) + ": " + path};
}

std::string folderOf(const std::string& path)
{
    const std::size_t slash = path.find_last_of('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path)
{
    return path.substr(path.find_last_of('/') + 1);
}

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    return *this;
}

FileDescriptor::~FileDescriptor()
{
    close();
}

int FileDescriptor::close()
{
    if (m_descriptor < 0) {
        return 0;
    }
    const int result = ::close(std::exchange(m_descriptor, -1));
    // Linux has released the descriptor by then: a second close could hit someone else's.
    return result != 0 && errno == EINTR ? 0 : result;
}

FileDescriptor openFile(int folder, const std::string& path, int flags, mode_t mode)
{
    int descriptor = -1;
    do {
        descriptor = ::openat(folder, path.c_str(), flags | O_CLOEXEC, mode);
    } while (descriptor < 0 && errno == EINTR);
    return FileDescriptor{descriptor};
}

Expected<void, FileError> syncFolder(const FileDescriptor& folder, const std::string& path)
{
    int result = 0;
    do {
        result = ::fsync(folder.get());
    } while (result != 0 && errno == EINTR);
    // EINVAL: this file system has nothing to synchronise for a folder.
    if (result != 0 && errno != EINVAL) {
        return Unexpected{lastFileError("fsync", path)};
    }
    return {};
}

Expected<void, FileError> syncFolder(const std::string& path)
{
    const FileDescriptor folder = openFile(AT_FDCWD, path, O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen()) {
        return Unexpected{lastFileError("open", path)};
    }
    return syncFolder(folder, path);
}

} // namespace brevlin
