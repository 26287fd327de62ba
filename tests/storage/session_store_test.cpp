#include "storage/session_store_fixture.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

TEST_F(SessionStoreTest, the_first_start_is_empty_and_writes_nothing)
{
    const SessionStore store = open(legacyPath);
    EXPECT_TRUE(store.sessions().empty());
    EXPECT_EQ(store.lastError(), std::nullopt);
    EXPECT_TRUE(files.files.empty());
    EXPECT_EQ(defaultHistoryLocation("/data").path, path);
    EXPECT_EQ(defaultHistoryLocation("/data").legacyPath, legacyPath);
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

    const std::string second = "/data/Brevlin/sessions-v1.unreadable-20260131T235959Z-2.json";
    files.files[setAsidePath] = files.files[second] = "an earlier one";
    files.failures.failOperation(1);
    store.insert(session(1, 1.0));
    EXPECT_EQ(file(), newer) << "what cannot be kept must not be overwritten";
    file() += "\n"; // somebody else's, and no better
    store.insert(session(2, 2.0));
    EXPECT_EQ(files.files.at("/data/Brevlin/sessions-v1.unreadable-20260131T235959Z-3.json"), newer + "\n");
    EXPECT_EQ(files.files.at(setAsidePath), "an earlier one");
    EXPECT_EQ(files.files.size(), 4U);
    EXPECT_EQ(ids(open().sessions()), "12 11 ");

    file() = "{";
    SessionStore mended = open();
    file() = twoRecords();
    mended.insert(session(3, 3000.0));
    EXPECT_EQ(ids(recordsOf(file())), "13 12 11 ") << "a whole one in its place is taken over";
    EXPECT_EQ(files.files.size(), 4U);
}

TEST_F(SessionStoreTest, a_history_that_could_not_be_read_is_whole_once_it_can)
{
    file() = twoRecords();
    const std::string before = file();
    files.unreadable = {path};
    SessionStore store = open();
    listenTo(store);
    EXPECT_NE(store.lastError()->underlyingDescription.find("Permission denied"), std::string::npos);
    store.insert(session(3, 3000.0));
    store.insert(session(4, 1500.0));
    EXPECT_EQ(ids(store.sessions()), "13 14 ");
    EXPECT_EQ(scheduler.nextDelay(), RetryTimer::firstDelay);
    store.clear();
    EXPECT_NE(store.lastError()->underlyingDescription.find("Permission denied"), std::string::npos);
    store.remove(store.sessions()[1]);
    EXPECT_EQ(ids(store.sessions()), "13 14 ") << "nothing is removed from what nobody has seen";
    scheduler.advance(Seconds{3600});
    store.retry();
    EXPECT_EQ(m_failures, "fetch clear delete ") << "told once, however often it is tried";
    EXPECT_EQ(files.files, (std::map<std::string, std::string>{{path, before}}));
    EXPECT_FALSE(store.isSaved());

    files.unreadable.clear();
    scheduler.advance(RetryTimer::longestDelay);
    EXPECT_EQ(ids(store.sessions()), "13 12 14 11 ");
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "");
    EXPECT_EQ(files.files.size(), 1U);
    EXPECT_EQ(m_changes, 2);
}

TEST_F(SessionStoreTest, reading_is_tried_soon_and_then_more_and_more_seldom)
{
    files.unreadable = {path};
    const SessionStore store = open();
    std::vector<double> attempts;
    for (int second = 1; second <= 1800; ++second) {
        const int before = files.failures.operationCount();
        scheduler.advance(Seconds{1});
        if (files.failures.operationCount() != before) {
            attempts.push_back(second);
        }
    }
    EXPECT_EQ(attempts, (std::vector<double>{2, 6, 14, 30, 62, 126, 254, 510, 810, 1110, 1410, 1710}));
    files.unreadable.clear();
    scheduler.advance(RetryTimer::longestDelay);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(SessionStoreTest, a_record_that_the_disk_refuses_stays_and_is_tried_again)
{
    file() = twoRecords();
    SessionStore store = open();
    listenTo(store);
    files.failures.failFrom(1);
    store.insert(session(3, 3000.0));
    EXPECT_EQ(ids(store.sessions()), "13 12 11 ");
    scheduler.advance(Seconds{60});
    store.insert(session(4, 4000.0));
    EXPECT_EQ(store.unsavedCount(), 2U);
    EXPECT_EQ(m_failures, "insert insert ") << "each is told once";
    files.failures.failNothing();
    scheduler.advance(RetryTimer::longestDelay);
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(store.lastError(), std::nullopt);
    EXPECT_EQ(ids(open().sessions()), "14 13 12 11 ");
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    files.failures.failFrom(1);
    store.insert(session(5, 5000.0));
    EXPECT_EQ(scheduler.nextDelay(), RetryTimer::firstDelay);
    thread.runsAtOnce = false;
    store.retry();
    store.retry();
    EXPECT_EQ(thread.waitingCount(), 1U);
}

TEST_F(SessionStoreTest, changes_take_effect_before_the_disk_has_them_and_reach_it_in_order)
{
    SessionStore store = open();
    thread.runsAtOnce = false;
    store.insert(session(1, 1000.0));
    store.insert(session(2, 2000.0));
    store.remove(store.sessions()[1]);
    store.insert(session(3, 500.0));
    store.retry();
    EXPECT_EQ(thread.waitingCount(), 4U) << "what is on its way is not tried again";
    EXPECT_EQ(ids(store.sessions()), "12 13 ");
    EXPECT_FALSE(files.exists(path));
    std::vector<std::string> onDisk;
    while (thread.waitingCount() > 0) {
        thread.runOne();
        onDisk.push_back(ids(recordsOf(file())));
    }
    EXPECT_EQ(onDisk, (std::vector<std::string>{"11 ", "12 11 ", "12 ", "12 13 "}));
    EXPECT_TRUE(store.isSaved());
}

TEST_F(SessionStoreTest, a_history_that_is_read_late_joins_what_was_done_meanwhile)
{
    file() = twoRecords();
    thread.runsAtOnce = false;
    SessionStore store = open();
    listenTo(store);
    store.retry();
    EXPECT_EQ(thread.waitingCount(), 1U);
    store.insert(session(3, 1500.0));
    store.insert(session(2, 2500.0));
    EXPECT_EQ(ids(store.sessions()), "12 13 ");
    thread.runAll();
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
    const std::string theirs = *encodeSessionArchive(
        std::array{SessionRecord(session(6, 9000.0)), SessionRecord(session(5, 2500.0)),
                   SessionRecord(session(2, 2000.25)), SessionRecord(session(1, 1000.0))});
    file() = theirs;
    store.insert(session(4, 4000.0));
    EXPECT_EQ(ids(store.sessions()), "16 14 13 15 12 ") << "what was deleted here stays so";
    EXPECT_EQ(file(), *encodeSessionArchive(store.sessions()));
    EXPECT_EQ(m_changes, 1);

    files.beforeReplacing = [&] {
        test::FakeDocumentThread theirThread;
        SessionStore other({path, {}}, {files, theirThread, scheduler, clock});
        other.insert(session(8, 100.0));
    };
    store.insert(session(9, 200.0));
    EXPECT_EQ(ids(store.sessions()), "16 14 13 15 12 19 18 ") << "at the last moment";
    EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "");
    int looks = 0;
    const std::function<void()> interfere = [&] {
        file() += " ";
        ++looks;
        files.beforeReplacing = interfere;
    };
    files.beforeReplacing = interfere;
    store.insert(session(10, 50.0));
    files.beforeReplacing = nullptr;
    EXPECT_EQ(looks, 3);
    EXPECT_EQ(file().back(), '}') << "whoever writes without end is not waited for";

    file() = theirs;
    store.clear();
    EXPECT_EQ(file(), R"({"sessions":[],"version":1})");
    files.files.erase(path);
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
    scheduler.advance(RetryTimer::firstDelay);
    EXPECT_EQ(ids(recordsOf(file())), "13 12 11 ");

    file() = "{";
    store.insert(session(4, 4000.0));
    scheduler.advance(Seconds{3600});
    EXPECT_EQ(file(), "{");
    EXPECT_EQ(m_failures, "insert ") << "told once when it lasts";
    store.retry(HistoryFile::Patience::ended);
    EXPECT_EQ(ids(recordsOf(file())), "14 13 12 11 ");
    EXPECT_EQ(files.files.size(), 2U) << "what stood in the place is kept beside it";
}

TEST_F(SessionStoreTest, a_failed_refresh_keeps_the_records)
{
    file() = twoRecords();
    SessionStore store = open();
    listenTo(store);
    file() += "x";
    store.refresh();
    EXPECT_TRUE(store.lastError());
    EXPECT_EQ(m_failures, "fetch ");
    EXPECT_EQ(store.sessions().size(), 2U);
    file().pop_back();
    store.refresh();
    EXPECT_EQ(store.lastError(), std::nullopt);
    file() += "x";
    store.refresh();
    store.insert(session(3, 3000.0));
    EXPECT_EQ(file().back(), 'x') << "it may be half copied";
}

TEST_F(SessionStoreTest, the_legacy_history_is_copied_once_and_stays)
{
    files.files[legacyPath] = twoRecords();
    EXPECT_EQ(open().sessions().size(), 0U) << "another location never looks there";
    files.failures.failOperation(3);
    EXPECT_EQ(open(legacyPath).sessions().size(), 2U) << "read in place when it cannot be copied";
    EXPECT_FALSE(files.exists(path));
    SessionStore store = open(legacyPath);
    EXPECT_EQ(file(), files.files[legacyPath]);
    store.clear();
    EXPECT_TRUE(open(legacyPath).sessions().empty());
    EXPECT_EQ(files.files.size(), 2U);
    file() = "unreadable";
    files.unreadable = {path};
    EXPECT_TRUE(open(legacyPath).lastError());
    EXPECT_EQ(file(), "unreadable") << "no copy is laid over it";
    files.files.erase(path);
    files.unreadable = {legacyPath};
    EXPECT_TRUE(open(legacyPath).lastError());
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
    EXPECT_EQ(files.files.size(), 1U) << "nothing is set aside for a write that does not come";
    EXPECT_TRUE(store.sessions().empty());
    EXPECT_TRUE(store.isSaved());
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
                files.files = {{path, start}};
                const int before = files.failures.operationCount();
                forEver ? files.failures.failFrom(failing) : files.failures.failOperation(failing);
                SessionStore store = open();
                for (const Change change : changes) {
                    change(store);
                    // Whatever is on the disk now is whole, and counts as saved only when it is all of it.
                    const std::string stored = files.files.contains(path) ? file() : "";
                    if (store.isSaved() && store.isLoaded()) {
                        EXPECT_EQ(test::differences(recordsOf(stored), store.sessions()), "") << failing;
                    } else {
                        EXPECT_TRUE(stored.empty() || stored == start || decodeSessionArchive(stored));
                    }
                }
                isClean = failing > files.failures.operationCount() - before;
                files.failures.failNothing();
                store.retry();
                EXPECT_TRUE(store.isSaved()) << failing;
                EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "") << failing;
                EXPECT_EQ(ids(store.sessions()).substr(ids(store.sessions()).size() - 3), "15 ") << failing;
                EXPECT_EQ(start == good || files.files[setAsidePath] == start, true) << failing;
            }
        }
    }
}

} // namespace
} // namespace brevlin
