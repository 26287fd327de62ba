#pragma once

#include <string>
#include <vector>

namespace brevlin {

/// Holds folders for one process alone. The kernel lets go of them however the process ends.
class FolderLock final
{
public:
    enum class Result {
        taken,
        held,  ///< another process has one of them
        failed ///< nobody can tell; failure() says why
    };

    /// The folders are created when they are missing. One of them may stand for several names.
    explicit FolderLock(std::vector<std::string> folders) : m_folders(std::move(folders)) {}
    ~FolderLock() { release(); }
    FolderLock(const FolderLock&) = delete;
    FolderLock& operator=(const FolderLock&) = delete;

    /// Takes all of them, those that it has already included.
    Result take();
    void release();
    const std::vector<std::string>& folders() const { return m_folders; }
    /// In the system's words.
    const std::string& failure() const { return m_failure; }

private:
    Result lock(const std::string& folder);

    std::vector<std::string> m_folders;
    std::vector<int> m_descriptors;
    std::string m_failure;
};

} // namespace brevlin
