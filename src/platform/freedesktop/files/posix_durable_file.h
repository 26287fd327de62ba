#pragma once

#include "platform/durable_file.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Files on a POSIX file system. A new content is written to a temporary file in the same folder,
/// synchronised and renamed over the old one, and then the folder is synchronised: leaving out any of these
/// steps was seen to lose acknowledged bytes in simulated power cuts.
class PosixDurableFile final : public DurableFile
{
public:
    /// Refuses what is not a regular file (EISDIR, EINVAL) and what is larger than 1 GiB (EFBIG).
    Expected<std::optional<FileContent>, FileError> readStamped(const std::string& path) const override;
    Expected<std::optional<FileStamp>, FileError> readPieces(const std::string& path,
                                                             const PieceSink& take) const override;
    Expected<std::optional<FileStamp>, FileError> stamp(const std::string& path) const override;
    Expected<FileStamp, FileError> write(const std::string& path, std::string_view bytes) override;
    Expected<FileStamp, FileError> writePieces(const std::string& path,
                                               const std::function<bool(const PieceSink&)>& produce) override;
    Expected<FileStamp, FileError> replace(const std::string& path, std::string_view bytes,
                                           const std::optional<FileStamp>& known) override;
    Expected<FileStamp, FileError> replaceStart(const std::string& path, std::string_view start,
                                                std::size_t replaced, const FileStamp& known) override;
    /// Renames a symbolic link itself.
    Expected<void, FileError> rename(const std::string& from, const std::string& to) override;
    /// Removes what a symbolic link points at and leaves the link.
    Expected<void, FileError> remove(const std::string& path) override;
    Expected<std::vector<std::string>, FileError> names(const std::string& folder) const override;
    bool exists(const std::string& path) const override;
};

} // namespace brevlin
