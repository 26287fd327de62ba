#pragma once

#include "platform/durable_file.h"
#include "support/failure_plan.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevlin::test {

/// Files in memory. Reading, writing, renaming and removing count as operations of `failures`; a failed one
/// changes nothing.
class MemoryDurableFile final : public DurableFile
{
public:
    std::map<std::string, std::string> files;
    std::set<std::string> unreadable; ///< paths whose reading is refused (EACCES); renaming moves the mark
    mutable FailurePlan failures;
    std::function<void()> beforeReplacing; ///< what somebody else does at the last moment, once

    Expected<std::optional<FileContent>, FileError> readStamped(const std::string& path) const override
    {
        if (const auto error = failures.next("read", path)) {
            return Unexpected{*error};
        }
        if (unreadable.contains(path)) {
            return Unexpected{fileError("open", EACCES, path)};
        }
        const auto file = files.find(path);
        return file == files.end() ? std::nullopt
                                   : std::optional{FileContent{file->second, stampOf(file->second)}};
    }

    Expected<std::optional<FileStamp>, FileError> readPieces(const std::string& path,
                                                             const PieceSink& take) const override
    {
        constexpr std::size_t pieceSize = 100; // so that most records come in pieces
        const auto content = readStamped(path);
        if (!content || !*content) {
            return content ? Expected<std::optional<FileStamp>, FileError>{std::nullopt}
                           : Unexpected{content.error()};
        }
        std::string_view rest = (*content)->bytes;
        while (!rest.empty() && take(rest.substr(0, pieceSize))) {
            rest.remove_prefix(std::min(pieceSize, rest.size()));
        }
        return std::optional{(*content)->stamp};
    }

    Expected<std::optional<FileStamp>, FileError> stamp(const std::string& path) const override
    {
        if (unreadable.contains(path)) {
            return std::optional{FileStamp{}};
        }
        const auto file = files.find(path);
        return file == files.end() ? std::nullopt : std::optional{stampOf(file->second)};
    }

    Expected<FileStamp, FileError> write(const std::string& path, std::string_view bytes) override
    {
        if (const auto error = failures.next("write", path)) {
            return Unexpected{*error};
        }
        files[path] = bytes;
        return stampOf(bytes);
    }

    Expected<FileStamp, FileError> writePieces(const std::string& path,
                                               const std::function<bool(const PieceSink&)>& produce) override
    {
        std::string bytes;
        const bool isComplete = produce([&bytes](std::string_view piece) {
            bytes += piece;
            return true;
        });
        return isComplete ? write(path, bytes)
                          : Expected<FileStamp, FileError>{Unexpected{fileError("write", ECANCELED, path)}};
    }

    Expected<FileStamp, FileError> replace(const std::string& path, std::string_view bytes,
                                           const std::optional<FileStamp>& known) override
    {
        if (beforeReplacing) {
            std::exchange(beforeReplacing, nullptr)();
        }
        if (const auto standing = stamp(path); *standing != known) {
            return Unexpected{fileError("rename", ESTALE, path)};
        }
        return write(path, bytes);
    }

    Expected<FileStamp, FileError> replaceStart(const std::string& path, std::string_view start,
                                                std::size_t replaced, const FileStamp& known) override
    {
        const std::string old = exists(path) ? files[path] : std::string();
        return replace(path, std::string(start) + old.substr(std::min(replaced, old.size())), known);
    }

    Expected<void, FileError> rename(const std::string& from, const std::string& to) override
    {
        if (const auto error = failures.next("rename", from)) {
            return Unexpected{*error};
        }
        if (!exists(from)) {
            return Unexpected{fileError("rename", ENOENT, from)};
        }
        if (exists(to)) {
            return Unexpected{fileError("rename", EEXIST, to)};
        }
        if (auto file = files.extract(from)) {
            file.key() = to;
            files.insert(std::move(file));
        }
        if (unreadable.erase(from) > 0) {
            unreadable.insert(to);
        }
        return {};
    }

    Expected<void, FileError> remove(const std::string& path) override
    {
        if (const auto error = failures.next("unlink", path)) {
            return Unexpected{*error};
        }
        files.erase(path);
        unreadable.erase(path);
        return {};
    }

    Expected<std::vector<std::string>, FileError> names(const std::string& folder) const override
    {
        if (const auto error = failures.next("open", folder)) {
            return Unexpected{*error};
        }
        std::vector<std::string> result;
        for (const auto& [path, bytes] : files) {
            if (path.starts_with(folder + "/")) {
                result.push_back(path.substr(folder.size() + 1));
            }
        }
        return result;
    }

    bool exists(const std::string& path) const override
    {
        return files.contains(path) || unreadable.contains(path);
    }

private:
    static FileStamp stampOf(std::string_view bytes)
    {
        return {1, std::hash<std::string_view>{}(bytes), static_cast<std::int64_t>(bytes.size()), 0};
    }
};

} // namespace brevlin::test
