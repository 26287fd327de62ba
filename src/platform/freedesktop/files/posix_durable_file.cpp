#include "platform/freedesktop/files/posix_durable_file.h"

#include "platform/freedesktop/files/file_descriptor.h"
#include "platform/freedesktop/files/leftovers.h"
#include "platform/freedesktop/files/new_content.h"

#include <dirent.h>
#include <fcntl.h>
#include <limits.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <thread>
#include <utility>

namespace brevlin {

namespace {

constexpr off_t largestFile = off_t{1} << 30;
// Room behind the content for a reader that loads whole vectors past its end.
constexpr std::size_t spareCapacity = 64;
constexpr std::size_t pieceSize = std::size_t{1} << 16;
constexpr mode_t privateFile = 0600;
constexpr mode_t privateFolder = 0700;
constexpr mode_t permissionBits = 07777;

// 0 for a regular file, else the errno that stands for what it is.
int refusal(const struct stat& status)
{
    if (S_ISREG(status.st_mode)) {
        return 0;
    }
    return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
}

// Where the bytes of this path are or would be: also the target of a link that points at nothing yet.
Expected<std::string, FileError> followLinks(std::string path)
{
    constexpr int mostLinks = 40; // the kernel's own limit
    for (int links = 0; links < mostLinks; ++links) {
        std::array<char, PATH_MAX> target{};
        const ssize_t length = ::readlink(path.c_str(), target.data(), target.size());
        if (length < 0) {
            // EINVAL: not a link. What else may be wrong shows when the file is opened.
            return path;
        }
        const std::string_view text(target.data(), static_cast<std::size_t>(length));
        path = text.starts_with('/') ? std::string(text) : folderOf(path) + "/" + std::string(text);
    }
    return Unexpected{fileError("readlink", ELOOP, path)};
}

Expected<void, FileError> createFolders(const std::string& path)
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) {
        return {};
    }
    const std::string parent = folderOf(path);
    if (parent != path) {
        if (auto created = createFolders(parent); !created) {
            return created;
        }
    }
    if (::mkdir(path.c_str(), privateFolder) != 0) {
        return errno == EEXIST ? Expected<void, FileError>{} : Unexpected{lastFileError("mkdir", path)};
    }
    auto synced = syncFolder(parent);
    if (!synced) {
        // Else the next attempt would find the folder and take it for a durable one.
        ::rmdir(path.c_str());
    }
    return synced;
}

FileStamp stampOf(const struct stat& status)
{
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    return {status.st_dev, status.st_ino, status.st_size,
            status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec};
}

// Everything up to the close: afterwards the bytes are on the disk, under the temporary name.
Expected<FileStamp, FileError> fillFile(FileDescriptor file, const FileDescriptor& folder,
                                        const NewContent& content, mode_t mode, const std::string& path)
{
    if (auto written = fill(file, folder, content, path); !written) {
        return Unexpected{written.error()};
    }
    if (::fchmod(file.get(), mode) != 0) {
        return Unexpected{lastFileError("fchmod", path)};
    }
    int result = 0;
    do {
        result = ::fsync(file.get());
    } while (result != 0 && errno == EINTR);
    if (result != 0) {
        return Unexpected{lastFileError("fsync", path)};
    }
    // Before the renaming: whoever replaces the file afterwards is not taken for us.
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0) {
        return Unexpected{lastFileError("stat", path)};
    }
    if (file.close() != 0) {
        return Unexpected{lastFileError("close", path)};
    }
    return stampOf(status);
}

struct OpenedFile
{
    FileDescriptor file;
    FileStamp stamp;
};

Expected<std::optional<OpenedFile>, FileError> openForReading(const std::string& path)
{
    // O_NONBLOCK: a pipe in the file's place must not hold up the start.
    FileDescriptor file = openFile(AT_FDCWD, path, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    if (!file.isOpen()) {
        if (errno == ENOENT) {
            return std::optional<OpenedFile>{};
        }
        return Unexpected{lastFileError("open", path)};
    }
    struct stat status = {};
    if (::fstat(file.get(), &status) != 0) {
        return Unexpected{lastFileError("stat", path)};
    }
    if (const int code = refusal(status); code != 0) {
        return Unexpected{fileError("read", code, path)};
    }
    if (status.st_size > largestFile) {
        return Unexpected{fileError("read", EFBIG, path)};
    }
    return std::optional<OpenedFile>{OpenedFile{std::move(file), stampOf(status)}};
}

// Less than the size only at the end of the file.
Expected<std::size_t, FileError> readUpTo(const FileDescriptor& file, char* bytes, std::size_t size,
                                          const std::string& path)
{
    std::size_t length = 0;
    while (length < size) {
        const ssize_t count = ::read(file.get(), bytes + length, size - length);
        if (count < 0 && errno != EINTR) {
            return Unexpected{lastFileError("read", path)};
        }
        if (count == 0) {
            break;
        }
        length += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return length;
}

// The mode that the new content takes over.
Expected<mode_t, FileError> modeFor(const FileDescriptor& folder, const std::string& path)
{
    struct stat status = {};
    if (::fstatat(folder.get(), nameOf(path).c_str(), &status, 0) != 0) {
        return errno == ENOENT ? Expected<mode_t, FileError>{privateFile}
                               : Unexpected{lastFileError("stat", path)};
    }
    if (const int code = refusal(status); code != 0) {
        return Unexpected{fileError("open", code, path)};
    }
    return status.st_mode & permissionBits;
}

// Whether the file still is what the caller knows; see DurableFile::replace().
using Known = std::optional<std::optional<FileStamp>>;

Expected<void, FileError> checkKnown(const FileDescriptor& folder, const std::string& path,
                                     const Known& known)
{
    if (!known) {
        return {};
    }
    struct stat status = {};
    std::optional<FileStamp> stamp;
    if (::fstatat(folder.get(), nameOf(path).c_str(), &status, 0) == 0) {
        stamp = stampOf(status);
    } else if (errno != ENOENT) {
        return Unexpected{lastFileError("stat", path)};
    }
    return stamp == *known ? Expected<void, FileError>{} : Unexpected{fileError("rename", ESTALE, path)};
}

Expected<FileStamp, FileError> replaceFile(const FileDescriptor& folder, const std::string& path,
                                           const NewContent& content, mode_t mode, const Known& known)
{
    const std::string temporaryName = makeTemporaryName();
    FileDescriptor file =
        openFile(folder.get(), temporaryName, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, privateFile);
    if (!file.isOpen()) {
        return Unexpected{lastFileError("open", folderOf(path) + "/" + temporaryName)};
    }
    // After a failed fsync the kernel takes the pages for clean, so a second one proves nothing: every
    // failure throws the temporary file away, and the caller's next attempt starts from memory.
    auto filled = fillFile(std::move(file), folder, content, mode, path);
    if (!filled) {
        ::unlinkat(folder.get(), temporaryName.c_str(), 0);
        return filled;
    }
    // Also what was copied is what the caller knows then.
    if (const auto checked = checkKnown(folder, path, known); !checked) {
        ::unlinkat(folder.get(), temporaryName.c_str(), 0);
        return Unexpected{checked.error()};
    }
    if (::renameat(folder.get(), temporaryName.c_str(), folder.get(), nameOf(path).c_str()) != 0) {
        const FileError error = lastFileError("rename", path);
        ::unlinkat(folder.get(), temporaryName.c_str(), 0);
        return Unexpected{error};
    }
    if (const auto synced = syncFolder(folder, folderOf(path)); !synced) {
        return Unexpected{synced.error()};
    }
    return filled;
}

Expected<FileStamp, FileError> writeFile(const std::string& path, const NewContent& content,
                                         const Known& known)
{
    const auto target = followLinks(path);
    if (!target) {
        return Unexpected{target.error()};
    }
    const std::string folderPath = folderOf(*target);
    if (auto created = createFolders(folderPath); !created) {
        return Unexpected{created.error()};
    }
    const FileDescriptor folder = openFile(AT_FDCWD, folderPath, O_RDONLY | O_DIRECTORY);
    if (!folder.isOpen()) {
        return Unexpected{lastFileError("open", folderPath)};
    }
    const auto mode = modeFor(folder, *target);
    if (!mode) {
        return Unexpected{mode.error()};
    }
    return replaceFile(folder, *target, content, *mode, known);
}

} // namespace

Expected<std::optional<FileContent>, FileError> PosixDurableFile::readStamped(const std::string& path) const
{
    const auto opened = openForReading(path);
    if (!opened || !*opened) {
        return opened ? Expected<std::optional<FileContent>, FileError>{std::nullopt}
                      : Unexpected{opened.error()};
    }
    const auto size = static_cast<std::size_t>((*opened)->stamp.size);
    std::string bytes;
    bytes.reserve(size + spareCapacity);
    bytes.resize(size);
    const auto length = readUpTo((*opened)->file, bytes.data(), size, path);
    if (!length) {
        return Unexpected{length.error()};
    }
    bytes.resize(*length);
    return std::optional{FileContent{std::move(bytes), (*opened)->stamp}};
}

Expected<std::optional<FileStamp>, FileError> PosixDurableFile::readPieces(const std::string& path,
                                                                           const PieceSink& take) const
{
    const auto opened = openForReading(path);
    if (!opened || !*opened) {
        return opened ? Expected<std::optional<FileStamp>, FileError>{std::nullopt}
                      : Unexpected{opened.error()};
    }
    std::string piece(pieceSize, '\0');
    for (;;) {
        // A program that starts reads its long history on the processor that its window's display wants, too.
        std::this_thread::yield();
        const auto length = readUpTo((*opened)->file, piece.data(), piece.size(), path);
        if (!length) {
            return Unexpected{length.error()};
        }
        if (*length == 0 || !take({piece.data(), *length})) {
            return std::optional{(*opened)->stamp};
        }
    }
}

Expected<std::optional<FileStamp>, FileError> PosixDurableFile::stamp(const std::string& path) const
{
    struct stat status = {};
    if (::stat(path.c_str(), &status) == 0) {
        return std::optional{stampOf(status)};
    }
    return errno == ENOENT ? Expected<std::optional<FileStamp>, FileError>{std::nullopt}
                           : Unexpected{lastFileError("stat", path)};
}

Expected<FileStamp, FileError> PosixDurableFile::write(const std::string& path, std::string_view bytes)
{
    return writeFile(path, {bytes, std::nullopt, nullptr}, std::nullopt);
}

Expected<FileStamp, FileError>
PosixDurableFile::writePieces(const std::string& path, const std::function<bool(const PieceSink&)>& produce)
{
    return writeFile(path, {{}, std::nullopt, &produce}, std::nullopt);
}

Expected<FileStamp, FileError> PosixDurableFile::replace(const std::string& path, std::string_view bytes,
                                                         const std::optional<FileStamp>& known)
{
    return writeFile(path, {bytes, std::nullopt, nullptr}, known);
}

Expected<FileStamp, FileError> PosixDurableFile::replaceStart(const std::string& path, std::string_view start,
                                                              std::size_t replaced, const FileStamp& known)
{
    return writeFile(path, {start, static_cast<off_t>(replaced), nullptr}, std::optional{known});
}

Expected<void, FileError> PosixDurableFile::rename(const std::string& from, const std::string& to)
{
    int result = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result != 0 && errno == EINVAL) {
        // Some network file systems do not know the flag. Only one process writes here, so a look will do.
        struct stat status = {};
        if (::lstat(to.c_str(), &status) == 0) {
            return Unexpected{fileError("rename", EEXIST, to)};
        }
        result = ::rename(from.c_str(), to.c_str());
    }
    if (result != 0) {
        return Unexpected{lastFileError("rename", errno == EEXIST ? to : from)};
    }
    return syncFolder(folderOf(to));
}

Expected<void, FileError> PosixDurableFile::remove(const std::string& path)
{
    const auto target = followLinks(path);
    if (!target) {
        return Unexpected{target.error()};
    }
    if (::unlink(target->c_str()) != 0) {
        return errno == ENOENT ? Expected<void, FileError>{} : Unexpected{lastFileError("unlink", *target)};
    }
    return syncFolder(folderOf(*target));
}

Expected<std::vector<std::string>, FileError> PosixDurableFile::names(const std::string& folder) const
{
    const std::unique_ptr<DIR, int (*)(DIR*)> stream(::opendir(folder.c_str()), ::closedir);
    if (!stream) {
        return errno == ENOENT ? Expected<std::vector<std::string>, FileError>{std::vector<std::string>{}}
                               : Unexpected{lastFileError("opendir", folder)};
    }
    std::vector<std::string> result;
    for (;;) {
        errno = 0;
        const dirent* entry = ::readdir(stream.get());
        if (entry == nullptr) {
            return errno == 0 ? Expected<std::vector<std::string>, FileError>{std::move(result)}
                              : Unexpected{lastFileError("readdir", folder)};
        }
        if (const std::string_view name = entry->d_name; name != "." && name != "..") {
            result.emplace_back(name);
        }
    }
}

bool PosixDurableFile::exists(const std::string& path) const
{
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 || (errno != ENOENT && errno != ENOTDIR);
}

} // namespace brevlin
