#pragma once

#include "platform/durable_file.h"

#include <cerrno>
#include <optional>
#include <string>
#include <system_error>

namespace brevlin::test {

inline FileError fileError(const std::string& operation, int code, const std::string& path)
{
    return {operation, code, std::generic_category().message(code) + ": " + path};
}

/// Counts the operations of a fake and decides which of them fail.
class FailurePlan final
{
public:
    /// The n-th operation from now fails (1 is the next one), all others succeed.
    void failOperation(int n) { set(n, n); }
    /// The n-th operation from now fails, and every one after it.
    void failFrom(int n) { set(n, std::nullopt); }
    /// From now on everything succeeds.
    void failNothing() { m_first.reset(); }

    int operationCount() const { return m_count; }

    /// Counts one operation; gives its error when it is to fail.
    std::optional<FileError> next(const std::string& operation, const std::string& path)
    {
        ++m_count;
        const bool fails = m_first && m_count >= *m_first && (!m_last || m_count <= *m_last);
        return fails ? std::optional{fileError(operation, ENOSPC, path)} : std::nullopt;
    }

private:
    void set(int first, std::optional<int> last)
    {
        m_first = m_count + first;
        m_last = last ? std::optional{m_count + *last} : std::nullopt;
    }

    int m_count = 0;
    std::optional<int> m_first;
    std::optional<int> m_last;
};

} // namespace brevlin::test
