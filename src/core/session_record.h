#pragma once

#include "core/finished_session.h"
#include "core/instant.h"
#include "core/raw_value.h"
#include "core/shared_text.h"
#include "core/timer_vocabulary.h"
#include "core/uuid.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace brevlin {

/// The raw string of an enumeration as it was stored. A string that names no case is kept, so that a record
/// of a later release survives being read and written by this one. As small as a pointer, because a history
/// holds two in every record.
template <typename E>
class StoredRawValue final
{
public:
    StoredRawValue(E value) // NOLINT(google-explicit-constructor): a case is its own stored form
        : m_case(caseOf(value))
    {}
    explicit StoredRawValue(std::string_view text)
    {
        const auto known = std::find_if(cases().begin(), cases().end(),
                                        [text](const Case& candidate) { return candidate.second == text; });
        m_case = known != cases().end() ? &*known : makeUnknown(text);
    }
    StoredRawValue(const StoredRawValue& other)
        : m_case(other.isKnown() ? other.m_case : makeUnknown(other.text()))
    {}
    StoredRawValue(StoredRawValue&& other) noexcept
        : m_case(std::exchange(other.m_case, cases().data())) // NOLINT(readability-redundant-member-init)
    {}
    StoredRawValue& operator=(StoredRawValue other) noexcept
    {
        std::swap(m_case, other.m_case);
        return *this;
    }
    ~StoredRawValue()
    {
        if (!isKnown()) {
            delete static_cast<const Unknown*>(m_case);
        }
    }

    /// The case, or nothing for a string that names none.
    std::optional<E> value() const { return isKnown() ? std::optional{m_case->first} : std::nullopt; }
    std::string_view text() const { return m_case->second; }

    bool operator==(const StoredRawValue& other) const { return text() == other.text(); }
    bool operator==(E value) const { return m_case == caseOf(value); }

private:
    using Case = RawValueCase<E>;
    struct Unknown : Case
    {
        explicit Unknown(std::string_view stored) : text(stored) { this->second = text; }
        const std::string text;
    };

    static constexpr const auto& cases() { return RawValues<E>::cases; }
    static constexpr const Case* caseOf(E value)
    {
        std::size_t index = 0;
        while (cases()[index].first != value) {
            ++index;
        }
        return &cases()[index];
    }
    static const Case* makeUnknown(std::string_view text) { return new Unknown(text); }
    bool isKnown() const
    {
        return !std::less<>{}(m_case, cases().data()) &&
               std::less<>{}(m_case, cases().data() + cases().size());
    }

    const Case* m_case = nullptr; // one of cases(), or an Unknown of its own
};

/// One phase that ended, as the history keeps it. The fields that statistics read come first and share a
/// cache line: a history of years is walked on every redraw.
struct alignas(64) SessionRecord
{
    Instant endedAt; ///< the key of every ordering and of all statistics
    Seconds effectiveDuration{0.0};
    StoredRawValue<TimerPhase> phaseRawValue = TimerPhase::focus;
    StoredRawValue<SessionOutcome> outcomeRawValue = SessionOutcome::completed;
    Uuid id;
    Instant plannedStartAt;
    Instant actualStartAt;
    Instant scheduledEndAt;
    Seconds plannedDuration{0.0};
    Seconds pauseDuration{0.0};
    std::int64_t cycleIndex = 1;
    std::int64_t interruptionCount = 0;
    SharedText intention;                 ///< empty when there was none
    SharedText timeZoneIdentifierAtStart; ///< an IANA zone name
    bool completedWhileAway = false;

    SessionRecord() = default;
    explicit SessionRecord(const FinishedSession& session);

    bool operator==(const SessionRecord&) const = default;

    std::optional<TimerPhase> phase() const { return phaseRawValue.value(); }
    std::optional<SessionOutcome> outcome() const { return outcomeRawValue.value(); }
};
static_assert(sizeof(SessionRecord) == 128, "a history of years holds each of its records twice");

/// The order of every list of records, to be used with a stable sort: latest end first.
inline bool endedLater(const SessionRecord& left, const SessionRecord& right)
{
    return left.endedAt > right.endedAt;
}

} // namespace brevlin
