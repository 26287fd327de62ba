#pragma once

#include "core/expected.h"

#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Why the file system refused, with its own words.
struct FileError
{
    std::string operation;   ///< the call that failed, for example "fsync"
    int code = 0;            ///< errno
    std::string description; ///< the system's text for the code and the path concerned, UTF-8

    bool operator==(const FileError&) const = default;
};

/// Whole files that survive a kill, a power cut and a full disk. A path is absolute and in the file system's
/// encoding. What a successful operation did is on the disk when it returns.
class DurableFile
{
public:
    virtual ~DurableFile() = default;

    /// The whole content; nothing when no file exists at the path.
    virtual Expected<std::optional<std::string>, FileError> read(const std::string& path) const = 0;
    /// Replaces the file as a whole: whoever reads it finds the old or the new bytes. Creates missing folders
    /// (0700); a new file gets mode 0600, an existing one keeps its mode. A symbolic link is followed, not
    /// replaced. After an error the old bytes still stand; only when the very last step failed, making the
    /// new name durable, may the new ones be found.
    virtual Expected<void, FileError> write(const std::string& path, std::string_view bytes) = 0;
    /// Renames a file within its folder. An existing target is never replaced: that is an error (EEXIST).
    virtual Expected<void, FileError> rename(const std::string& from, const std::string& to) = 0;
    /// Removes the file; no error when there is none.
    virtual Expected<void, FileError> remove(const std::string& path) = 0;
    /// Whether anything exists at the path (a broken link does not).
    virtual bool exists(const std::string& path) const = 0;
};

} // namespace brevlin
