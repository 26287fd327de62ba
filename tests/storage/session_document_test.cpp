#include "storage/session_archive_scanner.h"
#include "storage/session_store_fixture.h"
#include "storage/snapshot_document.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

class SessionDocumentTest : public SessionStoreTest
{};

TEST_F(SessionDocumentTest, every_field_is_read_from_its_key_and_written_to_it)
{
    const std::string text =
        R"({"sessions":[{"actualStartAt":1,"completedWhileAway":true,"cycleIndex":2,)"
        R"("effectiveDuration":3.5,"endedAt":4,"id":"00000000-0000-4000-8000-000000000005","intention":"six",)"
        R"("interruptionCount":7,"outcomeRawValue":"skipped","pauseDuration":9,"phaseRawValue":"longBreak",)"
        R"("plannedDuration":11,"plannedStartAt":12,"scheduledEndAt":13,)"
        R"("timeZoneIdentifierAtStart":"Asia/Tokyo"}],"version":1})";
    FinishedSession session;
    session.startedAt = Instant{Seconds{1}};
    session.completedWhileAway = true;
    session.cycleIndex = 2;
    session.effectiveDuration = Seconds{3.5};
    session.endedAt = Instant{Seconds{4}};
    session.id = *Uuid::fromText("00000000-0000-4000-8000-000000000005");
    session.intention = "six";
    session.interruptionCount = 7;
    session.outcome = SessionOutcome::skipped;
    session.pauseDuration = Seconds{9};
    session.phase = TimerPhase::longBreak;
    session.plannedDuration = Seconds{11};
    session.scheduledEndAt = Instant{Seconds{13}};
    session.timeZoneIdentifierAtStart = "Asia/Tokyo";
    SessionRecord record(session);
    record.plannedStartAt = Instant{Seconds{12}};
    EXPECT_EQ(test::differences(recordsOf(text), {record}), "");
    EXPECT_EQ(*encodeSessionArchive({&record, 1}), text);
    for (const bool hasIntention : {true, false}) {
        session.intention = hasIntention ? session.intention : std::nullopt;
        const auto finished = encode(session);
        ASSERT_TRUE(finished);
        EXPECT_EQ(*decodeFinishedSession(*finished), session);
        EXPECT_EQ(finished->find("intention") != std::string::npos, hasIntention);
    }
}

TEST_F(SessionDocumentTest, after_any_change_the_file_holds_what_memory_holds)
{
    // In front, behind, in between, at the same instant, and twice: the kept text must follow all of it.
    SessionStore store = open();
    const std::pair<int, double> changes[] = {{1, 1000}, {2, 3000}, {3, 2000}, {4, 3000}, {5, 4000},
                                              {6, 5000}, {2, 6000}, {7, 7000}, {7, 500},  {8, 8000},
                                              {9, 9000}, {0, 8500}, {0, 9500}};
    for (const auto& [number, endedAt] : changes) {
        store.insert(session(number, endedAt));
        EXPECT_TRUE(store.isSaved());
        EXPECT_EQ(test::differences(open().sessions(), store.sessions()), "") << number;
        EXPECT_EQ(file(), *encodeSessionArchive(store.sessions())) << number;
        EXPECT_EQ(store.focusCounts(), FocusCounts(store.sessions())) << number;
    }
    EXPECT_EQ(ids(store.sessions()), "10 19 18 12 16 15 14 13 11 17 ");
    store.remove(store.sessions()[3]);
    store.remove(SessionRecord(session(80, 1.0)));
    store.insert(session(10, 10'000));
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(ids(open().sessions()), "20 10 19 18 16 15 14 13 11 17 ");
}

TEST_F(SessionDocumentTest, a_file_in_whatever_form_is_read_the_same_and_written_in_ours)
{
    // What of two records is written otherwise, and whether the file is still one to put a record in front
    // of.
    struct Case
    {
        const char* ours;
        const char* theirs;
        bool staysBehindTheNew;
    };
    for (const Case& c : {Case{"\"sessions\"", "\"sessions\"", true},
                          {"2000.25", "2.00025e3", true},
                          {"2000.25", "20002.5e-1", true},
                          {"1499.5", "-0.0", true},
                          {"1499.5", "601234567.12345678", true},
                          {"1499.5", "0.1234567890123456789012345678901", true},
                          {"1499.5", "5e-324", true},
                          {"\"intention\":\"\"", R"("intention":"\"\\\u4e2d\n")", true},
                          {"\"intention\":\"\"", R"("intention":"早安 \ud83d\ude00")", true},
                          {"\"cycleIndex\":1", "\"cycleIndex\":1.0", false},
                          {"1499.5", "1234567890123456789", false},
                          {"\"id\":", "\"id\": ", false},
                          {"{\"actual", "{\"another\":1,\"actual", false},
                          {"\"version\":1}", "\"version\":1}\n", false},
                          {"\"version\":1}", "\"version\":1,\"version\":7}", false},
                          {"{\"sessions", "\xEF\xBB\xBF{\"sessions", false},
                          {"\"endedAt\":2000.25", "\"endedAt\":2.25", false}}) {
        std::string text = twoRecords();
        ASSERT_NE(text.find(c.ours), std::string::npos) << c.ours;
        text.replace(text.find(c.ours), std::string(c.ours).size(), c.theirs);
        file() = text;
        SessionStore store = open();
        ASSERT_EQ(store.lastError(), std::nullopt) << c.theirs;
        EXPECT_EQ(test::differences(store.sessions(), recordsOf(text)), "") << c.theirs;
        store.insert(session(3, 3000.0));
        const std::string start = *encodeSessionArchive({store.sessions().data(), 1});
        EXPECT_EQ(file(), c.staysBehindTheNew ? start.substr(0, start.find(']')) + "," + text.substr(13)
                                              : *encodeSessionArchive(store.sessions()))
            << c.theirs;
        EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "") << c.theirs;
    }
    // Where the file cannot be kept, it is made anew of what is here.
    SessionStore store = open();
    files.failures.failOperation(1);
    store.insert(session(4, 4000.0));
    EXPECT_FALSE(store.isSaved());
    store.insert(session(5, 5000.0));
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(file(), *encodeSessionArchive(store.sessions()));
}

TEST_F(SessionDocumentTest, texts_and_numbers_of_any_length_are_read_without_the_library_as_with_it)
{
    const auto scanned = [](std::string text, const std::string& ours, const std::string& theirs) {
        text.replace(text.find(ours), ours.size(), theirs);
        SessionArchiveScanner scanner(text.size());
        const auto records = scanner.take(text) ? scanner.finish() : std::nullopt;
        EXPECT_EQ(records.has_value(), bool(decodeSessionArchive(text))) << theirs;
        EXPECT_EQ(records ? test::differences(*records, recordsOf(text)) : "", "") << theirs;
    };
    for (std::size_t place = 0; place < 18; ++place) {
        for (const char* part :
             {R"(\")", R"(\\)", "\x1f", " ", "!", "#", "[", "]", "~", "\x7f", "\xff", "中"}) {
            scanned(twoRecords(), R"("intention":"")",
                    R"("intention":")" + std::string(place, 'x') + part + R"( and more than that")");
        }
        for (const char* part : {"", ".5", ".06250000", ".1234567", "/5", ":", ".", "e-3", ".25e2"}) {
            scanned(twoRecords(), "1499.5", std::string("172839405067543").substr(0, place % 15 + 1) + part);
        }
    }
}

TEST_F(SessionDocumentTest, thousands_of_records_come_one_by_one)
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

TEST_F(SessionDocumentTest, records_of_one_instant_keep_the_order_of_the_file)
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

TEST_F(SessionDocumentTest, records_that_share_an_id_go_and_come_back_together)
{
    std::string text = twoRecords();
    text.replace(text.find("]"), 0, "," + text.substr(13, text.find("}") - 12));
    file() = text;
    SessionStore store = open();
    ASSERT_EQ(ids(store.sessions()), "12 12 11 ");
    files.failures.failOperation(1);
    store.remove(store.sessions()[1]);
    EXPECT_EQ(ids(store.sessions()), "12 12 11 ");
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    EXPECT_EQ(store.focusCounts(), FocusCounts(store.sessions()));
    store.remove(store.sessions()[1]);
    EXPECT_EQ(ids(store.sessions()), "11 ");
    EXPECT_EQ(test::differences(open().sessions(), store.sessions()), "");
}

TEST_F(SessionDocumentTest, unknown_raw_values_and_any_order_of_keys_are_read_and_kept)
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

TEST_F(SessionDocumentTest, one_bad_record_makes_the_file_unreadable)
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

TEST_F(SessionDocumentTest, the_error_names_the_record)
{
    for (const auto& [sessions, error] :
         {std::pair{"[{}]", "The key \"actualStartAt\" of record 1 is missing"},
          {"[7]", "Record 1 is not a JSON object"},
          {"7", "The key \"sessions\" has an unexpected value"}}) {
        EXPECT_EQ(decodeSessionArchive(R"({"version":1,"sessions":)" + std::string(sessions) + "}")
                      .error()
                      .description,
                  error);
    }
}

TEST_F(SessionDocumentTest, every_truncation_is_an_error)
{
    const std::string text = twoRecords();
    for (std::size_t length = 0; length < text.size(); ++length) {
        file() = text.substr(0, length);
        EXPECT_TRUE(open().lastError()) << length;
    }
}

} // namespace
} // namespace brevlin
