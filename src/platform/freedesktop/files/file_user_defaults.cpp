#include "platform/freedesktop/files/file_user_defaults.h"

#include <cassert>
#include <cerrno>
#include <utility>

namespace brevlin {

FileUserDefaults::FileUserDefaults(std::string folder, DurableFile& files)
    : m_folder(std::move(folder)), m_files(files)
{}

Expected<std::optional<std::string>, FileError> FileUserDefaults::value(const std::string& key) const
{
    return m_files.read(path(key));
}

Expected<void, FileError> FileUserDefaults::setValue(const std::string& key, std::string_view bytes)
{
    const auto written = m_files.write(path(key), bytes);
    return written ? Expected<void, FileError>{} : Unexpected{written.error()};
}

Expected<void, FileError> FileUserDefaults::remove(const std::string& key)
{
    return m_files.remove(path(key));
}

Expected<void, FileError> FileUserDefaults::setAside(const std::string& key, const std::string& freeKey)
{
    auto renamed = m_files.rename(path(key), path(freeKey));
    return !renamed && renamed.error().code == ENOENT ? Expected<void, FileError>{} : renamed;
}

std::string FileUserDefaults::path(const std::string& key) const
{
    assert(!key.empty() && key.find('/') == std::string::npos);
    return m_folder + "/" + key + ".json";
}

} // namespace brevlin
