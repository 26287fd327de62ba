#pragma once

#include "platform/user_defaults.h"

#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// One file a key, `<folder>/<key>.json`, whose bytes are exactly the key's value.
class FileUserDefaults final : public UserDefaults
{
public:
    /// The folder need not exist: the first value creates it.
    FileUserDefaults(std::string folder, DurableFile& files);

    Expected<std::optional<std::string>, FileError> value(const std::string& key) const override;
    Expected<void, FileError> setValue(const std::string& key, std::string_view bytes) override;
    Expected<void, FileError> remove(const std::string& key) override;
    Expected<void, FileError> setAside(const std::string& key, const std::string& freeKey) override;

private:
    std::string path(const std::string& key) const;

    std::string m_folder;
    DurableFile& m_files;
};

} // namespace brevlin
