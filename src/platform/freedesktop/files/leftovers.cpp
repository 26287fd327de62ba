#include "platform/freedesktop/files/leftovers.h"

#include "core/uuid.h"

#include <filesystem>
#include <set>
#include <string_view>
#include <system_error>

namespace brevlin {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view prefix = ".brevlin-";
constexpr std::string_view suffix = ".tmp";

bool isTemporaryName(std::string_view name)
{
    if (!name.starts_with(prefix) || !name.ends_with(suffix) || name.size() < prefix.size() + suffix.size()) {
        return false;
    }
    name.remove_prefix(prefix.size());
    name.remove_suffix(suffix.size());
    return Uuid::fromText(name).has_value();
}

// The folder and every folder in which one of its links makes us write.
std::set<fs::path> writtenFolders(const fs::path& folder)
{
    std::set<fs::path> folders{folder};
    std::error_code ignored;
    for (fs::directory_iterator entry(folder, ignored), end; !ignored && entry != end;
         entry.increment(ignored)) {
        std::error_code broken;
        if (entry->is_symlink(broken)) {
            const fs::path target = fs::weakly_canonical(entry->path(), broken);
            if (!broken) {
                folders.insert(target.parent_path());
            }
        }
    }
    return folders;
}

} // namespace

std::string makeTemporaryName()
{
    return std::string(prefix) + Uuid::random().text() + std::string(suffix);
}

std::size_t removeLeftovers(const std::string& folder)
{
    std::size_t count = 0;
    for (const fs::path& written : writtenFolders(folder)) {
        std::error_code ignored;
        for (fs::directory_iterator entry(written, ignored), end; !ignored && entry != end;
             entry.increment(ignored)) {
            std::error_code failed;
            const bool isOurs = isTemporaryName(entry->path().filename().native()) &&
                                entry->symlink_status(failed).type() == fs::file_type::regular;
            if (isOurs && fs::remove(entry->path(), failed)) {
                ++count;
            }
        }
    }
    return count;
}

} // namespace brevlin
