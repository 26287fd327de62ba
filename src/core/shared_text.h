#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace brevlin {

/// A text that never changes; copies share it, on whatever threads they are. As small as a pointer: a history
/// of years holds two in every record, and the same ones again and again.
class SharedText final
{
public:
    SharedText() = default;           ///< the empty text
    SharedText(std::string_view text) // NOLINT(google-explicit-constructor): a text like any other
        : m_shared(text.empty() ? nullptr : new Shared{{1}, std::string(text)})
    {}
    SharedText(const std::string& text) // NOLINT(google-explicit-constructor)
        : SharedText(std::string_view{text})
    {}
    SharedText(const char* text) // NOLINT(google-explicit-constructor)
        : SharedText(std::string_view{text})
    {}
    SharedText(const SharedText& other) : m_shared(other.m_shared)
    {
        if (m_shared != nullptr) {
            m_shared->owners.fetch_add(1, std::memory_order_relaxed);
        }
    }
    SharedText(SharedText&& other) noexcept : m_shared(std::exchange(other.m_shared, nullptr)) {}
    SharedText& operator=(SharedText other) noexcept
    {
        std::swap(m_shared, other.m_shared);
        return *this;
    }
    ~SharedText()
    {
        if (m_shared != nullptr && m_shared->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
            delete m_shared;
        }
    }

    std::string_view view() const { return m_shared != nullptr ? std::string_view{m_shared->text} : ""; }
    operator std::string_view() const { return view(); } // NOLINT(google-explicit-constructor)

    bool operator==(const SharedText& other) const
    {
        return m_shared == other.m_shared || view() == other.view();
    }

private:
    struct Shared
    {
        std::atomic<std::uint32_t> owners;
        const std::string text;
    };

    Shared* m_shared = nullptr; // nothing is empty
};

} // namespace brevlin
