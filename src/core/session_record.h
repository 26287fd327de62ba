#pragma once

#include "core/finished_session.h"
#include "core/instant.h"
#include "core/raw_value.h"
#include "core/timer_vocabulary.h"
#include "core/uuid.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// The raw string of an enumeration as it was stored. A string that names no case is kept, so that a record
/// of a later release survives being read and written by this one. Small, because a history holds two in
/// every record.
template <typename E>
class StoredRawValue final
{
public:
    StoredRawValue(E value) // NOLINT(google-explicit-constructor): a case is its own stored form
        : m_case(value)
    {}
    explicit StoredRawValue(std::string_view text)
    {
        if (const auto known = fromRawValue<E>(text)) {
            m_case = *known;
        } else {
            m_unknown = std::make_unique<const std::string>(text);
        }
    }
    StoredRawValue(const StoredRawValue& other)
        : m_unknown(other.m_unknown ? std::make_unique<const std::string>(*other.m_unknown) : nullptr)
        , m_case(other.m_case)
    {}
    StoredRawValue& operator=(const StoredRawValue& other) { return *this = StoredRawValue(other); }
    StoredRawValue(StoredRawValue&&) noexcept = default;
    StoredRawValue& operator=(StoredRawValue&&) noexcept = default;
    ~StoredRawValue() = default;

    /// The case, or nothing for a string that names none.
    std::optional<E> value() const { return m_unknown ? std::nullopt : std::optional{m_case}; }
    std::string_view text() const { return m_unknown ? std::string_view{*m_unknown} : rawValue(m_case); }

    bool operator==(const StoredRawValue& other) const { return text() == other.text(); }

private:
    std::unique_ptr<const std::string> m_unknown; // set exactly where no case has the text
    E m_case{};
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
    std::string intention; ///< empty when there was none
    bool completedWhileAway = false;
    std::string timeZoneIdentifierAtStart; ///< an IANA zone name

    SessionRecord() = default;
    explicit SessionRecord(const FinishedSession& session);

    std::optional<TimerPhase> phase() const { return phaseRawValue.value(); }
    std::optional<SessionOutcome> outcome() const { return outcomeRawValue.value(); }
};

/// The order of every list of records, to be used with a stable sort: latest end first.
inline bool endedLater(const SessionRecord& left, const SessionRecord& right)
{
    return left.endedAt > right.endedAt;
}

} // namespace brevlin
