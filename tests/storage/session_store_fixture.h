#pragma once

#include "storage/session_archive.h"
#include "support/fake_disk.h"
#include "support/record_differences.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace brevlin {

inline const std::string path = "/data/Brevlin/sessions-v1.json";
inline const std::string legacyPath = "/data/Kestrove/sessions-v1.json";
inline const std::string setAsidePath = "/data/Brevlin/sessions-v1.unreadable-20260131T235959Z.json";

inline Uuid numberedId(int number)
{
    return *Uuid::fromText("00000000-0000-4000-8000-0000000000" + std::to_string(10 + number));
}

inline FinishedSession session(int number, double endedAt)
{
    FinishedSession result;
    result.id = numberedId(number);
    result.startedAt = Instant{Seconds{endedAt - 1500.0}};
    result.endedAt = Instant{Seconds{endedAt}};
    result.plannedDuration = Seconds{1500.0};
    result.effectiveDuration = Seconds{1499.5};
    result.timeZoneIdentifierAtStart = "Asia/Shanghai";
    return result;
}

inline std::string ids(const std::vector<SessionRecord>& records)
{
    std::string result;
    for (const SessionRecord& record : records) {
        result += record.id.text().substr(34) + " ";
    }
    return result;
}

class SessionStoreTest : public testing::Test, protected test::FakeDisk
{
protected:
    // At 2026-01-31 23:59:59 UTC.
    SessionStoreTest() : FakeDisk(test::FakeClock{instantFromUnixTime(Seconds{1'769'903'999.0})}) {}

    SessionStore open(std::optional<std::string> legacy = {}) { return {{path, legacy}, historyDisk()}; }
    static std::vector<SessionRecord> recordsOf(const std::string& document)
    {
        auto records = decodeSessionArchive(document);
        EXPECT_TRUE(records);
        return records ? *records : std::vector<SessionRecord>{};
    }
    void listenTo(SessionStore& store)
    {
        store.setObserver({[this] { ++m_changes; },
                           [this](const SessionStoreError& error) {
                               m_failures += std::string(rawValue(error.operation)) + " ";
                           }});
    }
    std::string& file() { return files.files[path]; }
    // A history of two records, the later one first.
    static std::string twoRecords()
    {
        const std::array records{SessionRecord(session(2, 2000.25)), SessionRecord(session(1, 1000.0))};
        return *encodeSessionArchive(records);
    }

    int m_changes = 0;
    std::string m_failures; // what was told, by operation
};

} // namespace brevlin
