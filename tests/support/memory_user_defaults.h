#pragma once

#include "platform/user_defaults.h"
#include "support/memory_durable_file.h"

namespace brevlin::test {

/// User defaults in memory, each in a file that has the key for its path.
class MemoryUserDefaults final : public UserDefaults
{
private:
    MemoryDurableFile m_files;

public:
    std::map<std::string, std::string>& values = m_files.files;
    std::set<std::string>& unreadable = m_files.unreadable;
    FailurePlan& failures = m_files.failures;

    Expected<std::optional<std::string>, FileError> value(const std::string& key) const override
    {
        return m_files.read(key);
    }
    Expected<void, FileError> setValue(const std::string& key, std::string_view bytes) override
    {
        const auto written = m_files.write(key, bytes);
        return written ? Expected<void, FileError>{} : Unexpected{written.error()};
    }
    Expected<void, FileError> remove(const std::string& key) override { return m_files.remove(key); }
    Expected<void, FileError> setAside(const std::string& key, const std::string& freeKey) override
    {
        return m_files.exists(key) ? m_files.rename(key, freeKey) : Expected<void, FileError>{};
    }
};

} // namespace brevlin::test
