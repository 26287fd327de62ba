#include "storage/session_archive.h"
#include "storage/session_store.h"
#include "support/fake_document_thread.h"
#include "support/fake_task_scheduler.h"
#include "support/memory_durable_file.h"
#include "support/record_differences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace brevlin {
namespace {

const std::string path = "/data/Brevlin/sessions-v1.json";
const std::string legacyPath = "/data/Kestrove/sessions-v1.json";
const std::string setAsidePath = "/data/Brevlin/sessions-v1.unreadable-20260131T235959Z.json";

Uuid numberedId(int number)
{
    return *Uuid::fromText("00000000-0000-4000-8000-0000000000" + std::to_string(10 + number));
}

FinishedSession session(int number, double endedAt)
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

std::string ids(const std::vector<SessionRecord>& records)
{
    std::string result;
    for (const SessionRecord& record : records) {
        result += record.id.text().substr(34) + " ";
    }
    return result;
}

class SessionStoreTest : public testing::Test
{
protected:
    SessionStore open(std::optional<std::string> legacy = {}) { return {{path, legacy}, disk(m_files)}; }
    HistoryDisk disk(test::MemoryDurableFile& files) { return {files, m_thread, m_scheduler, m_clock}; }
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
    std::string& file() { return m_files.files[path]; }
    // A history of two records, the later one first.
    std::string twoRecords()
    {
        test::MemoryDurableFile files;
        SessionStore store({path, {}}, disk(files));
        store.insert(session(1, 1000.0));
        store.insert(session(2, 2000.25));
        return files.files[path];
    }

    test::MemoryDurableFile m_files;
    test::FakeClock m_clock{instantFromUnixTime(Seconds{1'769'903'999.0})}; // 2026-01-31 23:59:59 UTC
    test::FakeTaskScheduler m_scheduler{m_clock};
    test::FakeDocumentThread m_thread;
    int m_changes = 0;
    std::string m_failures; // what was told, by operation
};

TEST_F(SessionStoreTest, the_first_start_is_empty_and_writes_nothing)
{
    const SessionStore store = open(legacyPath);
    EXPECT_TRUE(store.sessions().empty());
    EXPECT_EQ(store.lastError(), std::nullopt);
    EXPECT_TRUE(m_files.files.empty());
    EXPECT_EQ(defaultHistoryLocation("/data").path, path);
    EXPECT_EQ(defaultHistoryLocation("/data").legacyPath, legacyPath);
}

TEST_F(SessionStoreTest, the_file_has_the_documented_form)
{
    SessionStore store = open();
    store.insert(session(1, 1000.0));
    EXPECT_EQ(file(), R"({"sessions":[{"actualStartAt":-500,"completedWhileAway":false,"cycleIndex":1,)"
                      R"("effectiveDuration":1499.5,"endedAt":1000,)"
                      R"("id":"00000000-0000-4000-8000-000000000011","intention":"",)"
                      R"("interruptionCount":0,"outcomeRawValue":"completed","pauseDuration":0,)"
                      R"("phaseRawValue":"focus","plannedDuration":1500,"plannedStartAt":-500,)"
                      R"("scheduledEndAt":1000,"timeZoneIdentifierAtStart":"Asia/Shanghai"}],"version":1})");
    store.clear();
    EXPECT_EQ(file(), R"({"sessions":[],"version":1})");
}

TEST_F(SessionStoreTest, every_field_is_read_from_its_key_and_written_to_it)
{
    const std::string text =
        R"({"sessions":[{"actualStartAt":1,"completedWhileAway":true,"cycleIndex":2,)"
        R"("effectiveDuration":3.5,"endedAt":4,"id":"00000000-0000-4000-8000-000000000005","intention":"six",)"
        R"("interruptionCount":7,"outcomeRawValue":"skipped","pauseDuration":9,"phaseRawValue":"longBreak",)"
        R"("plannedDuration":11,"plannedStartAt":12,"scheduledEndAt":13,)"
        R"("timeZoneIdentifierAtStart":"Asia/Tokyo"}],"version":1})";
    SessionRecord record;
    record.actualStartAt = Instant{Seconds{1}};
    record.completedWhileAway = true;
    record.cycleIndex = 2;
    record.effectiveDuration = Seconds{3.5};
    record.endedAt = Instant{Seconds{4}};
    record.id = *Uuid::fromText("00000000-0000-4000-8000-000000000005");
    record.intention = "six";
    record.interruptionCount = 7;
    record.outcomeRawValue = SessionOutcome::skipped;
    record.pauseDuration = Seconds{9};
    record.phaseRawValue = TimerPhase::longBreak;
    record.plannedDuration = Seconds{11};
    record.plannedStartAt = Instant{Seconds{12}};
    record.scheduledEndAt = Instant{Seconds{13}};
    record.timeZoneIdentifierAtStart = "Asia/Tokyo";
    EXPECT_EQ(test::differences(recordsOf(text), {record}), "");
    SessionArchiveText written;
    ASSERT_TRUE(written.encode({record}));
    EXPECT_EQ(written.view(), text);
}

TEST_F(SessionStoreTest, after_any_change_the_file_holds_what_memory_holds)
{
    // In front, behind, in between, at the same instant, and twice: the kept text must follow all of it.
    SessionStore store = open();
    const std::pair<int, double> changes[] = {{1, 1000}, {2, 3000}, {3, 2000}, {4, 3000},
                                              {5, 4000}, {6, 5000}, {2, 6000}, {7, 7000},
                                              {7, 500},  {8, 8000}, {9, 9000}};
    for (const auto& [number, endedAt] : changes) {
        store.insert(session(number, endedAt));
        EXPECT_TRUE(store.isSaved());
        EXPECT_EQ(test::differences(open().sessions(), store.sessions()), "") << number;
        SessionArchiveText anew;
        ASSERT_TRUE(anew.encode(store.sessions()));
        EXPECT_EQ(file(), anew.view()) << number;
    }
    EXPECT_EQ(ids(store.sessions()), "19 18 12 16 15 14 13 11 17 ");
    store.remove(store.sessions()[2]);
    store.remove(SessionRecord(session(80, 1.0)));
    store.insert(session(10, 10'000));
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(ids(open().sessions()), "20 19 18 16 15 14 13 11 17 ");
}

TEST_F(SessionStoreTest, thousands_of_insertions_in_front_outgrow_the_kept_text)
{
    SessionStore store = open();
    FinishedSession next = session(1, 0.0);
    for (int number = 0; number < 1500; ++number) {
        next.id = Uuid::random();
        next.endedAt += Seconds{1.0};
        store.insert(next);
    }
    EXPECT_EQ(test::differences(open().sessions(), store.sessions()), "");
    EXPECT_EQ(store.sessions().size(), 1500U);
}

TEST_F(SessionStoreTest, records_of_one_instant_keep_the_order_of_the_file)
{
    SessionStore store = open();
    for (int number = 1; number <= 3; ++number) {
        store.insert(session(number, 1000.0));
    }
    EXPECT_EQ(ids(open().sessions()), "11 12 13 ");
    std::string& text = file();
    text.replace(text.find("\"endedAt\":1000"), 14, "\"endedAt\":999.5");
    EXPECT_EQ(ids(open().sessions()), "12 13 11 ");
}

TEST_F(SessionStoreTest, records_that_share_an_id_go_and_come_back_together)
{
    std::string text = twoRecords();
    text.replace(text.find("]"), 0, "," + text.substr(13, text.find("}") - 12));
    file() = text;
    SessionStore store = open();
    ASSERT_EQ(ids(store.sessions()), "12 12 11 ");
    m_files.failures.failOperation(1);
    store.remove(store.sessions()[1]);
    EXPECT_EQ(ids(store.sessions()), "12 12 11 ");
    store.remove(store.sessions()[1]);
    EXPECT_EQ(ids(store.sessions()), "11 ");
    EXPECT_EQ(test::differences(open().sessions(), store.sessions()), "");
}

TEST_F(SessionStoreTest, unknown_raw_values_and_any_order_of_keys_are_read_and_kept)
{
    std::string text = twoRecords();
    text.replace(text.find("\"completed\""), 11, "\"dreamt\"");
    text.replace(text.find("\"intention\":\"\","), 15, "");
    text.replace(text.find("\"timeZone"), 0, "\"later\":[1],\"intention\":\"a\",\"intention\":7,");
    text.replace(text.find("Shanghai\"}") + 9, 0, ",\"zzz\":1"); // behind the last that is known
    file() = text;
    SessionStore store = open();
    ASSERT_EQ(store.lastError(), std::nullopt);
    EXPECT_EQ(store.sessions()[0].outcome(), std::nullopt);
    EXPECT_EQ(store.sessions()[0].intention, "a");
    store.insert(session(3, 3000.0));
    EXPECT_NE(file().find("\"dreamt\""), std::string::npos);
}

TEST_F(SessionStoreTest, one_bad_record_makes_the_file_unreadable)
{
    const std::pair<const char*, const char*> faults[] = {
        {"\"intention\"", "\"intentions\""},
        {"\"endedAt\":1000", "\"endedAt\":\"1000\""},
        {"\"cycleIndex\":1", "\"cycleIndex\":1.5"},
        {"00000000-0000", "00000000_0000"},
        {"false", "0"},
        {"\"version\":1", "\"version\":2"},
        {"\"version\":1", "\"other\":1"},
        {"\"sessions\"", "\"session\""},
    };
    for (const auto& [good, bad] : faults) {
        std::string text = twoRecords();
        const std::size_t at = text.rfind(good);
        ASSERT_NE(at, std::string::npos) << good;
        text.replace(at, std::string(good).size(), bad);
        file() = text;
        const SessionStore store = open();
        ASSERT_TRUE(store.lastError()) << bad;
        EXPECT_EQ(store.lastError()->operation, SessionStoreError::Operation::fetch);
        EXPECT_TRUE(store.sessions().empty());
        EXPECT_EQ(file(), text);
    }
}

TEST_F(SessionStoreTest, every_truncation_is_an_error)
{
    const std::string text = twoRecords();
    for (std::size_t length = 0; length < text.size(); ++length) {
        file() = text.substr(0, length);
        EXPECT_TRUE(open().lastError()) << length;
    }
}

TEST_F(SessionStoreTest, a_damaged_history_is_kept_before_the_first_write)
{
    file() = R"({"sessions":[],"version":2})";
    const std::string newer = file();
    SessionStore store = open(legacyPath);
    listenTo(store);
    EXPECT_EQ(m_failures, "fetch ");
    EXPECT_TRUE(store.lastError()->errorDescription().starts_with(
        "无法读取专注记录：The file has the newer format version 2"));

    m_files.files[setAsidePath] = "an earlier one";
    m_files.failures.failOperation(1);
    store.insert(session(1, 1.0));
    EXPECT_EQ(file(), newer) << "what cannot be kept must not be overwritten";
    store.insert(session(2, 2.0));
    EXPECT_EQ(m_files.files.at("/data/Brevlin/sessions-v1.unreadable-20260131T235959Z-2.json"), newer);
    EXPECT_EQ(m_files.files.at(setAsidePath), "an earlier one");
    EXPECT_EQ(m_files.files.size(), 3U);
    EXPECT_EQ(ids(open().sessions()), "12 11 ");
}

TEST_F(SessionStoreTest, a_history_that_could_not_be_read_is_whole_once_it_can)
{
    file() = twoRecords();
    const std::string before = file();
    m_files.unreadable = {path};
    SessionStore store = open();
    listenTo(store);
    EXPECT_NE(store.lastError()->underlyingDescription.find("Permission denied"), std::string::npos);
    store.insert(session(3, 3000.0));
    store.insert(session(4, 1500.0));
    EXPECT_EQ(ids(store.sessions()), "13 14 ");
    store.clear();
    store.remove(store.sessions()[1]);
    EXPECT_EQ(ids(store.sessions()), "13 14 ") << "nothing is removed from what nobody has seen";
    m_scheduler.advance(Seconds{3600});
    store.retry();
    EXPECT_EQ(m_failures, "fetch clear delete ") << "told once, however often it is tried";
    EXPECT_EQ(m_files.files, (std::map<std::string, std::string>{{path, before}}));
    EXPECT_FALSE(store.isSaved());

    m_files.unreadable.clear();
    m_scheduler.advance(RetryTimer::longestDelay);
    EXPECT_EQ(ids(store.sessions()), "13 12 14 11 ");
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "");
    EXPECT_EQ(m_files.files.size(), 1U);
    EXPECT_EQ(m_changes, 2);
}

TEST_F(SessionStoreTest, reading_is_tried_soon_and_then_more_and_more_seldom)
{
    m_files.unreadable = {path};
    const SessionStore store = open();
    std::vector<double> attempts;
    for (int second = 1; second <= 1800; ++second) {
        const int before = m_files.failures.operationCount();
        m_scheduler.advance(Seconds{1});
        if (m_files.failures.operationCount() != before) {
            attempts.push_back(second);
        }
    }
    EXPECT_EQ(attempts, (std::vector<double>{2, 6, 14, 30, 62, 126, 254, 510, 810, 1110, 1410, 1710}));
}

TEST_F(SessionStoreTest, a_record_that_the_disk_refuses_stays_and_is_tried_again)
{
    file() = twoRecords();
    SessionStore store = open();
    listenTo(store);
    m_files.failures.failFrom(1);
    store.insert(session(3, 3000.0));
    EXPECT_EQ(ids(store.sessions()), "13 12 11 ");
    m_scheduler.advance(Seconds{60});
    store.insert(session(4, 4000.0));
    EXPECT_EQ(store.unsavedCount(), 2U);
    EXPECT_EQ(m_failures, "insert insert ") << "each is told once";
    m_files.failures.failNothing();
    m_scheduler.advance(RetryTimer::longestDelay);
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(store.lastError(), std::nullopt);
    EXPECT_EQ(ids(open().sessions()), "14 13 12 11 ");
}

TEST_F(SessionStoreTest, changes_take_effect_before_the_disk_has_them_and_reach_it_in_order)
{
    SessionStore store = open();
    m_thread.runsAtOnce = false;
    store.insert(session(1, 1000.0));
    store.insert(session(2, 2000.0));
    store.remove(store.sessions()[1]);
    store.insert(session(3, 500.0));
    EXPECT_EQ(ids(store.sessions()), "12 13 ");
    EXPECT_FALSE(m_files.exists(path));
    std::vector<std::string> onDisk;
    while (m_thread.waitingCount() > 0) {
        m_thread.runOne();
        onDisk.push_back(ids(recordsOf(file())));
    }
    EXPECT_EQ(onDisk, (std::vector<std::string>{"11 ", "12 11 ", "12 ", "12 13 "}));
    EXPECT_TRUE(store.isSaved());
}

TEST_F(SessionStoreTest, a_history_that_is_read_late_joins_what_was_done_meanwhile)
{
    file() = twoRecords();
    m_thread.runsAtOnce = false;
    SessionStore store = open();
    listenTo(store);
    store.insert(session(3, 1500.0));
    store.insert(session(2, 2500.0));
    EXPECT_EQ(ids(store.sessions()), "12 13 ");
    m_thread.runAll();
    EXPECT_EQ(ids(store.sessions()), "12 13 11 ") << "a record replaces the one of its id";
    EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "");
    EXPECT_EQ(m_changes, 1);
}

TEST_F(SessionStoreTest, what_others_have_written_into_the_file_is_kept)
{
    file() = twoRecords();
    SessionStore store = open();
    listenTo(store);
    store.remove(store.sessions()[1]);
    store.insert(session(3, 3000.0));
    // Another machine's file: it never had 3, still has 1, and has new records of its own.
    test::MemoryDurableFile theirs;
    theirs.files[path] = twoRecords();
    {
        SessionStore other({path, {}}, disk(theirs));
        other.insert(session(5, 2500.0));
        other.insert(session(6, 9000.0));
    }
    file() = theirs.files[path];
    store.insert(session(4, 4000.0));
    EXPECT_EQ(ids(store.sessions()), "16 14 13 15 12 ") << "what was deleted here stays so";
    EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "");
    EXPECT_EQ(m_changes, 1);

    m_files.beforeReplacing = [&] {
        test::FakeDocumentThread thread;
        SessionStore other({path, {}}, {m_files, thread, m_scheduler, m_clock});
        other.insert(session(8, 100.0));
    };
    store.insert(session(9, 200.0));
    EXPECT_EQ(ids(store.sessions()), "16 14 13 15 12 19 18 ") << "at the last moment";
    EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "");

    file() = theirs.files[path];
    store.clear();
    EXPECT_TRUE(recordsOf(file()).empty());
    m_files.files.erase(path);
    store.insert(session(7, 7000.0));
    EXPECT_EQ(ids(recordsOf(file())), "17 ") << "a file that is gone is made anew";
    EXPECT_EQ(m_failures, "");
}

TEST_F(SessionStoreTest, a_file_that_is_half_copied_is_waited_for)
{
    file() = twoRecords();
    const std::string whole = file();
    SessionStore store = open();
    listenTo(store);
    file().resize(whole.size() / 2);
    store.insert(session(3, 3000.0));
    EXPECT_EQ(file(), whole.substr(0, whole.size() / 2));
    EXPECT_EQ(m_failures, "") << "not told at once";
    file() = whole;
    m_scheduler.advance(RetryTimer::firstDelay);
    EXPECT_EQ(ids(recordsOf(file())), "13 12 11 ");

    file() = "{";
    store.insert(session(4, 4000.0));
    m_scheduler.advance(Seconds{3600});
    EXPECT_EQ(file(), "{");
    EXPECT_EQ(m_failures, "insert ") << "told once when it lasts";
    store.retry(HistoryFile::Patience::ended);
    EXPECT_EQ(ids(recordsOf(file())), "14 13 12 11 ");
    EXPECT_EQ(m_files.files.size(), 2U) << "what stood in the place is kept beside it";
}

TEST_F(SessionStoreTest, a_failed_refresh_keeps_the_records)
{
    file() = twoRecords();
    SessionStore store = open();
    file() += "x";
    store.refresh();
    EXPECT_TRUE(store.lastError());
    EXPECT_EQ(store.sessions().size(), 2U);
    file().pop_back();
    store.refresh();
    EXPECT_EQ(store.lastError(), std::nullopt);
}

TEST_F(SessionStoreTest, the_legacy_history_is_copied_once_and_stays)
{
    m_files.files[legacyPath] = twoRecords();
    EXPECT_EQ(open().sessions().size(), 0U) << "another location never looks there";
    m_files.failures.failOperation(3);
    EXPECT_EQ(open(legacyPath).sessions().size(), 2U) << "read in place when it cannot be copied";
    EXPECT_FALSE(m_files.exists(path));
    SessionStore store = open(legacyPath);
    EXPECT_EQ(file(), m_files.files[legacyPath]);
    store.clear();
    EXPECT_TRUE(open(legacyPath).sessions().empty());
    EXPECT_EQ(m_files.files.size(), 2U);
}

TEST_F(SessionStoreTest, a_record_that_json_cannot_express_is_refused_without_a_write)
{
    file() = R"({"sessions":[{}],"version":1})";
    SessionStore store = open();
    FinishedSession bad = session(1, 1.0);
    bad.effectiveDuration = Seconds{std::numeric_limits<double>::infinity()};
    listenTo(store);
    store.insert(bad);
    bad = session(1, 1.0);
    bad.intention = "\xff";
    store.insert(bad);
    EXPECT_EQ(m_failures, "fetch insert insert ");
    EXPECT_EQ(m_files.files.size(), 1U) << "nothing is set aside for a write that does not come";
    EXPECT_TRUE(store.sessions().empty());
    store.insert(session(1, 1.0));
    EXPECT_TRUE(store.isSaved());
}

TEST_F(SessionStoreTest, whichever_operation_fails_nothing_is_lost)
{
    using Change = void (*)(SessionStore&);
    const Change changes[] = {
        [](SessionStore& s) { s.insert(session(3, 3000.0)); },
        [](SessionStore& s) { s.insert(session(4, 4000.0)); },
        [](SessionStore& s) { s.insert(session(1, 5000.0)); },
        [](SessionStore& s) { s.remove(SessionRecord(session(3, 0.0))); },
        [](SessionStore& s) { s.clear(); },
        [](SessionStore& s) { s.insert(session(5, 10.0)); },
    };
    const std::string good = twoRecords();
    for (const std::string& start : {good, good + "x"}) {
        for (const bool forEver : {false, true}) {
            bool isClean = false;
            for (int failing = 1; !isClean; ++failing) {
                m_files.files = {{path, start}};
                const int before = m_files.failures.operationCount();
                forEver ? m_files.failures.failFrom(failing) : m_files.failures.failOperation(failing);
                SessionStore store = open();
                for (const Change change : changes) {
                    change(store);
                    // Whatever is on the disk now is whole, and counts as saved only when it is all of it.
                    const std::string stored = m_files.files.contains(path) ? file() : "";
                    if (store.isSaved() && store.isLoaded()) {
                        EXPECT_EQ(test::differences(recordsOf(stored), store.sessions()), "") << failing;
                    } else {
                        EXPECT_TRUE(stored.empty() || stored == start || decodeSessionArchive(stored));
                    }
                }
                isClean = failing > m_files.failures.operationCount() - before;
                m_files.failures.failNothing();
                store.retry();
                EXPECT_TRUE(store.isSaved()) << failing;
                EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "") << failing;
                EXPECT_EQ(ids(store.sessions()).substr(ids(store.sessions()).size() - 3), "15 ") << failing;
                EXPECT_EQ(start == good || m_files.files[setAsidePath] == start, true) << failing;
            }
        }
    }
}

TEST_F(SessionStoreTest, a_history_of_5_megabytes_loads)
{
    const std::string two = twoRecords();
    const std::size_t begin = two.find('[') + 1;
    const std::string records = two.substr(begin, two.rfind(']') - begin);
    std::string& text = file();
    text = R"({"sessions":[)" + records;
    while (text.size() < 5'000'000) {
        text += "," + records;
    }
    text += R"(],"version":1})";
    const SessionStore store = open();
    EXPECT_EQ(store.lastError(), std::nullopt);
    EXPECT_GT(store.sessions().size(), 10'000U);
    EXPECT_TRUE(std::is_sorted(store.sessions().begin(), store.sessions().end(), endedLater));
}

} // namespace
} // namespace brevlin
