#pragma once

#include "core/expected.h"
#include "platform/durable_file.h"

#include <sys/types.h>

#include <string>
#include <utility>

namespace brevlin {

/// The error for errno as it stands, in the system's own words.
FileError lastFileError(std::string operation, const std::string& path);
FileError fileError(std::string operation, int code, const std::string& path);

/// The two parts of an absolute path.
std::string folderOf(const std::string& path);
std::string nameOf(const std::string& path);

/// Owns an open file descriptor.
class FileDescriptor final
{
public:
    FileDescriptor() = default;
    explicit FileDescriptor(int descriptor) : m_descriptor(descriptor) {}
    FileDescriptor(FileDescriptor&& other) noexcept : m_descriptor(std::exchange(other.m_descriptor, -1)) {}
    FileDescriptor& operator=(FileDescriptor&& other) noexcept;
    ~FileDescriptor();

    bool isOpen() const { return m_descriptor >= 0; }
    int get() const { return m_descriptor; }
    /// Closes and tells whether the system reported a delayed failure (0 or -1 with errno).
    int close();

private:
    int m_descriptor = -1;
};

/// Opens as open(2) does, again after an interruption; always with O_CLOEXEC.
FileDescriptor openFile(int folder, const std::string& path, int flags, mode_t mode = 0);

/// Makes the entries of a folder durable: the names that were created, renamed or removed in it.
Expected<void, FileError> syncFolder(const FileDescriptor& folder, const std::string& path);
Expected<void, FileError> syncFolder(const std::string& path);

} // namespace brevlin
