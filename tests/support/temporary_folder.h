#pragma once

#include <stdlib.h>

#include <cassert>
#include <filesystem>
#include <string>
#include <system_error>

namespace brevlin::test {

/// A new empty folder that goes away with everything in it.
class TemporaryFolder final
{
public:
    TemporaryFolder() : m_path((std::filesystem::temp_directory_path() / "brevlin-test-XXXXXX").string())
    {
        [[maybe_unused]] const char* made = ::mkdtemp(m_path.data());
        assert(made != nullptr);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::string& path() const { return m_path; }
    std::string path(const std::string& name) const { return m_path + "/" + name; }

private:
    std::string m_path;
};

} // namespace brevlin::test
