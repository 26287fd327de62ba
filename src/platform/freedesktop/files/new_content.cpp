#include "platform/freedesktop/files/new_content.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>

namespace brevlin {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 18; // stays in the processor's cache

/// Fills a new file, and has the disk begin with what is there while the rest is still to come.
class FileFiller final
{
public:
    FileFiller(const FileDescriptor& file, const std::string& path) : m_file(file), m_path(path) {}

    Expected<void, FileError> write(std::string_view bytes)
    {
        while (!bytes.empty()) {
            const ssize_t written = ::write(m_file.get(), bytes.data(), std::min(bytes.size(), step));
            if (written < 0) {
                if (errno == EINTR) {
                    continue;
                }
                return Unexpected{lastFileError("write", m_path)};
            }
            bytes.remove_prefix(static_cast<std::size_t>(written));
            m_written += written;
            if (m_written - m_begun >= static_cast<off_t>(step)) {
                // A hint, whose failure means nothing: fsync tells what is on the disk.
                ::sync_file_range(m_file.get(), m_begun, m_written - m_begun, SYNC_FILE_RANGE_WRITE);
                m_begun = m_written;
            }
        }
        return {};
    }

    Expected<void, FileError> copy(const FileDescriptor& source, off_t begin)
    {
        std::string buffer(pieceSize, '\0');
        for (;;) {
            const ssize_t count = ::pread(source.get(), buffer.data(), buffer.size(), begin);
            if (count < 0 && errno != EINTR) {
                return Unexpected{lastFileError("read", m_path)};
            }
            if (count == 0) {
                return {};
            }
            if (count > 0) {
                begin += count;
                if (auto written = write({buffer.data(), static_cast<std::size_t>(count)}); !written) {
                    return written;
                }
            }
        }
    }

    off_t written() const { return m_written; }

private:
    static constexpr std::size_t step = std::size_t{1} << 22;

    const FileDescriptor& m_file;
    const std::string& m_path;
    off_t m_written = 0;
    off_t m_begun = 0; // the disk has been asked for all before
};

Expected<void, FileError> fillFrom(const std::function<bool(const PieceSink&)>& produce, FileFiller& filler,
                                   const std::string& path)
{
    Expected<void, FileError> written;
    const bool isComplete = produce([&](std::string_view piece) {
        if (written) {
            written = filler.write(piece);
        }
        return bool(written);
    });
    return isComplete || !written ? written : Unexpected{fileError("write", ECANCELED, path)};
}

} // namespace

Expected<void, FileError> fill(const FileDescriptor& file, const FileDescriptor& folder,
                               const NewContent& content, const std::string& path)
{
    FileFiller filler(file, path);
    if (content.produce != nullptr) {
        return fillFrom(*content.produce, filler, path);
    }
    auto written = filler.write(content.bytes);
    if (!written || !content.keptFrom) {
        return written;
    }
    const FileDescriptor old = openFile(folder.get(), nameOf(path), O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat status = {};
    if (!old.isOpen() || ::fstat(old.get(), &status) != 0) {
        return Unexpected{lastFileError("open", path)};
    }
    written = filler.copy(old, *content.keptFrom);
    const off_t whole = static_cast<off_t>(content.bytes.size()) + status.st_size - *content.keptFrom;
    return !written || filler.written() == whole ? written : Unexpected{fileError("read", ESTALE, path)};
}

} // namespace brevlin
