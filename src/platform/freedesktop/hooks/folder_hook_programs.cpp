#include "platform/freedesktop/hooks/folder_hook_programs.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

namespace brevlin {

namespace {

constexpr mode_t writableByOthers = S_IWGRP | S_IWOTH;

bool isSafe(const struct stat& file)
{
    return (file.st_uid == ::getuid() || file.st_uid == 0) && (file.st_mode & writableByOthers) == 0;
}

bool isHook(const std::string& name)
{
    return !name.starts_with('.') && !name.ends_with('~');
}

std::vector<std::string> names(const std::string& folder)
{
    std::vector<std::string> result;
    std::error_code error;
    for (auto each = std::filesystem::directory_iterator(folder, error);
         !error && each != std::filesystem::directory_iterator(); each.increment(error)) {
        if (std::string name = each->path().filename().string(); isHook(name)) {
            result.push_back(std::move(name));
        }
    }
    std::sort(result.begin(), result.end());
    return result;
}

} // namespace

FolderHookPrograms::FolderHookPrograms(std::string folder, HookLimits limits)
    : m_folder(std::move(folder)), m_limits(limits)
{}

std::vector<HookResult> FolderHookPrograms::run(const HookCall& call)
{
    struct stat folder
    {};
    if (::stat(m_folder.c_str(), &folder) != 0) {
        return {};
    }
    std::vector<HookResult> results;
    for (const std::string& name : names(m_folder)) {
        const std::string path = m_folder + "/" + name;
        struct stat file
        {};
        const bool isExecutable =
            ::stat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) && (file.st_mode & S_IXUSR) != 0;
        if (!isExecutable) {
            continue;
        }
        if (m_isHurried) {
            break;
        }
        HookResult result;
        if (isSafe(folder) && isSafe(file)) {
            result = runHook(path, call, m_limits, m_isHurried);
        } else {
            result.kind = HookResult::Kind::unsafe;
        }
        result.name = name;
        result.event = call.event;
        results.push_back(std::move(result));
    }
    return results;
}

} // namespace brevlin
