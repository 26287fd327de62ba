#include "storage/history_backups.h"
#include "storage/session_details_store.h"
#include "storage/session_store_fixture.h"

namespace brevlin {
namespace {

using namespace std::chrono;

const BackupPaths paths{path, "/data/Brevlin/session-details-v1.json", "/state/backups"};

class HistoryBackupsTest : public SessionStoreTest
{
protected:
    HistoryBackupsTest()
    {
        backups.setFailureHandler([this](const DocumentError&) { ++m_refusals; });
    }

    void store(int count)
    {
        std::vector<SessionRecord> records;
        for (int number = count; number > 0; --number) {
            records.emplace_back(session(number, 100.0 * number));
        }
        file() = *encodeSessionArchive(records);
    }
    void storeDetails()
    {
        SessionDetails details;
        details.pauses = {{Instant{Seconds{1}}, Instant{Seconds{2}}}};
        SessionDetailsStore(paths.details, historyDisk()).set(numberedId(1), details);
    }
    /// The copies, the latest first, as "31.1:2".
    std::string listed()
    {
        std::string result;
        backups.list([&result](const HistoryBackups::List& list) {
            for (const auto& [day, count] : *list) {
                const year_month_day date{day};
                result += std::to_string(static_cast<unsigned>(date.day())) + "." +
                          std::to_string(static_cast<unsigned>(date.month())) + ":" +
                          (count ? std::to_string(*count) : "damaged") + " ";
            }
        });
        return result;
    }
    std::map<std::string, std::string> copies() const
    {
        auto result = files.files;
        std::erase_if(result, [](const auto& each) { return !each.first.starts_with(paths.folder); });
        return result;
    }
    static LocalDay day(int count) { return LocalDay{2026y / January / 30} + days{count}; }

    HistoryBackups backups{paths, historyDisk()};
    int m_refusals = 0;
};

TEST_F(HistoryBackupsTest, the_first_record_of_a_day_brings_a_copy_that_later_ones_leave_alone)
{
    store(2);
    storeDetails();
    backups.recordWasWritten(day(0));
    store(3);
    backups.recordWasWritten(day(0));
    HistoryBackups(paths, historyDisk()).recordWasWritten(day(0)); // of a later start
    EXPECT_EQ(listed(), "30.1:2 ");
    files.files.erase(paths.details);
    backups.recordWasWritten(day(1));
    EXPECT_EQ(listed(), "31.1:3 30.1:2 ");
    EXPECT_EQ(copies().size(), 3U);
    backups.read(day(0), [](HistoryBackups::Content content) {
        EXPECT_EQ(ids(content->records), "12 11 ");
        EXPECT_EQ(content->details.size(), 1U);
    });
    const auto before = copies();
    for (const char* damaged : {"", "{", R"({"sessions":[],"version":2})"}) {
        file() = damaged;
        backups.recordWasWritten(day(2));
        EXPECT_EQ(copies(), before) << damaged;
    }
    files.files["/state/backups/sessions-2026-01-31.json"].pop_back();
    EXPECT_EQ(listed(), "31.1:damaged 30.1:2 ");
    backups.read(day(1), [](const HistoryBackups::Content& content) { EXPECT_FALSE(content); });
}

TEST_F(HistoryBackupsTest, a_file_in_another_form_is_copied_and_counted_all_the_same)
{
    store(2);
    file().insert(1, " ");
    backups.recordWasWritten(day(0));
    EXPECT_EQ(listed(), "30.1:2 ");
    EXPECT_EQ(copies().begin()->second, file());
    const SessionRecord one(session(1, 1.0));
    std::vector<SessionRecord> unsorted{one, SessionRecord(session(2, 2.0))};
    file() = *encodeSessionArchive(unsorted);
    backups.recordWasWritten(day(1));
    EXPECT_EQ(listed(), "31.1:2 30.1:2 ");
}

TEST_F(HistoryBackupsTest, seven_days_and_the_last_of_twelve_months_stay)
{
    store(1);
    storeDetails();
    files.files["/state/backups/details-2020-01-01.json"] = "of a crash";
    files.files["/state/backups/sessions-2026-02-30.json"] = "of nobody";
    for (int count = 0; count < 400; ++count) {
        backups.recordWasWritten(day(count));
    }
    EXPECT_EQ(listed(), "5.3:1 4.3:1 3.3:1 2.3:1 1.3:1 28.2:1 27.2:1 31.1:1 31.12:1 30.11:1 31.10:1 30.9:1 "
                        "31.8:1 31.7:1 30.6:1 31.5:1 30.4:1 ");
    EXPECT_EQ(copies().size(), 2U * 17 + 1) << "what is not ours stays";
    const auto before = copies();
    backups.recordWasWritten(day(-1000)); // by a clock that was set back
    EXPECT_TRUE(copies().contains("/state/backups/sessions-2023-05-06.json"));
    EXPECT_EQ(copies().size(), before.size() + 2) << "nothing made room for it";
}

TEST_F(HistoryBackupsTest, a_disk_that_refuses_at_any_moment_costs_no_copy_and_is_tried_again)
{
    for (int operation = 1;; ++operation) {
        files.files.clear();
        store(1);
        storeDetails();
        HistoryBackups fresh(paths, historyDisk());
        for (int count = 0; count < 8; ++count) {
            fresh.recordWasWritten(day(count));
        }
        const auto before = copies();
        const int done = files.failures.operationCount();
        files.failures.failOperation(operation);
        fresh.recordWasWritten(day(8));
        const bool hasFailed = files.failures.operationCount() - done >= operation;
        files.failures.failNothing();
        for (int count = 2; count < 8; ++count) {
            const std::string name = "/state/backups/sessions-2026-02-0" + std::to_string(count - 1);
            EXPECT_TRUE(copies().contains(name + ".json")) << operation;
        }
        for (const auto& [name, bytes] : copies()) {
            EXPECT_TRUE(bytes == file() || name.find("details") != std::string::npos) << operation;
        }
        fresh.recordWasWritten(day(8));
        EXPECT_TRUE(copies().contains("/state/backups/sessions-2026-02-07.json")) << operation;
        EXPECT_EQ(copies().size(), before.size() + 2) << operation;
        if (!hasFailed) {
            EXPECT_GT(operation, 8);
            break;
        }
    }
}

TEST_F(HistoryBackupsTest, clearing_leaves_none_and_goes_on_until_that_is_so)
{
    store(1);
    storeDetails();
    for (int count = 0; count < 3; ++count) {
        backups.recordWasWritten(day(count));
    }
    files.failures.failFrom(4);
    backups.clear();
    EXPECT_FALSE(copies().empty());
    scheduler.advance(Seconds{60});
    EXPECT_EQ(m_refusals, 1) << "told once";
    files.failures.failNothing();
    scheduler.advance(RetryTimer::longestDelay);
    EXPECT_TRUE(copies().empty());
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    EXPECT_EQ(listed(), "");
    backups.recordWasWritten(day(2));
    EXPECT_EQ(listed(), "1.2:1 ") << "the day's first again";
}

TEST_F(HistoryBackupsTest, a_record_counts_once_it_is_on_the_disk)
{
    SessionStore records = open();
    int written = 0;
    records.setObserver({{}, {}, {}, {}, [&written] {
                             ++written;
                         }});
    files.failures.failFrom(1);
    records.insert(session(1, 100.0));
    EXPECT_EQ(written, 0);
    files.failures.failNothing();
    scheduler.advance(Seconds{60});
    EXPECT_EQ(written, 1);
    records.remove(records.sessions().front());
    EXPECT_EQ(written, 1) << "nothing new";
}

} // namespace
} // namespace brevlin
