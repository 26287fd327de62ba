#pragma once

#include "core/expected.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevlin {

/// Why the file system refused, with its own words.
struct FileError
{
    std::string operation;   ///< the call that failed, for example "fsync"
    int code = 0;            ///< errno
    std::string description; ///< the system's text for the code and the path concerned, UTF-8

    bool operator==(const FileError&) const = default;
};

/// Tells one content of a file from another one without reading it: whoever replaces the file or writes into
/// it gives it another stamp.
struct FileStamp
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t modifiedAt = 0; ///< nanoseconds since 1970

    bool operator==(const FileStamp&) const = default;
};

struct FileContent
{
    std::string bytes;
    FileStamp stamp; ///< from before the bytes were read
};

/// Takes the next piece of a content; false where it wants no more.
using PieceSink = std::function<bool(std::string_view)>;

/// Whole files that survive a kill, a power cut and a full disk. A path is absolute and in the file system's
/// encoding. What a successful operation did is on the disk when it returns. Safe to use from several threads
/// on different files.
class DurableFile
{
public:
    virtual ~DurableFile() = default;

    /// The whole content; nothing when no file exists at the path.
    virtual Expected<std::optional<FileContent>, FileError> readStamped(const std::string& path) const = 0;
    Expected<std::optional<std::string>, FileError> read(const std::string& path) const
    {
        auto content = readStamped(path);
        if (!content) {
            return Unexpected{content.error()};
        }
        return *content ? std::optional{std::move((*content)->bytes)} : std::nullopt;
    }
    /// Hands the content over piece by piece as long as `take` wants more, without holding all of it; gives
    /// the stamp from before. Nothing when no file exists at the path.
    virtual Expected<std::optional<FileStamp>, FileError> readPieces(const std::string& path,
                                                                     const PieceSink& take) const = 0;
    /// Of what stands at the path; nothing when no file exists there.
    virtual Expected<std::optional<FileStamp>, FileError> stamp(const std::string& path) const = 0;
    /// Replaces the file as a whole: whoever reads it finds the old or the new bytes. Creates missing folders
    /// (0700); a new file gets mode 0600, an existing one keeps its mode. A symbolic link is followed, not
    /// replaced. After an error the old bytes still stand; only when the very last step failed, making the
    /// new name durable, may the new ones be found. Gives the stamp of the new content.
    virtual Expected<FileStamp, FileError> write(const std::string& path, std::string_view bytes) = 0;
    /// write() of a content that `produce` hands to its argument piece by piece, so that nobody holds all of
    /// it. The argument gives false once the disk has refused; where `produce` itself gives false, that is an
    /// error (ECANCELED) and the file stays what it was.
    virtual Expected<FileStamp, FileError>
    writePieces(const std::string& path, const std::function<bool(const PieceSink&)>& produce) = 0;
    /// Writes only as long as the file is the one with this stamp (nothing: as long as there is none), looked
    /// at right before the new bytes take its place; else that is an error (ESTALE).
    virtual Expected<FileStamp, FileError> replace(const std::string& path, std::string_view bytes,
                                                   const std::optional<FileStamp>& known) = 0;
    /// replace() for a file that stays the same behind its first `replaced` bytes, which are no more than it
    /// has: these give way to `start`, and the others are copied without being held in memory.
    virtual Expected<FileStamp, FileError> replaceStart(const std::string& path, std::string_view start,
                                                        std::size_t replaced, const FileStamp& known) = 0;
    /// Renames a file within its folder. An existing target is never replaced: that is an error (EEXIST).
    virtual Expected<void, FileError> rename(const std::string& from, const std::string& to) = 0;
    /// Removes the file; no error when there is none.
    virtual Expected<void, FileError> remove(const std::string& path) = 0;
    /// Of all that stands in the folder, in no order; none where there is no such folder.
    virtual Expected<std::vector<std::string>, FileError> names(const std::string& folder) const = 0;
    /// Whether anything exists at the path (a broken link does not).
    virtual bool exists(const std::string& path) const = 0;
};

} // namespace brevlin
