#include "storage/session_details_document.h"
#include "storage/session_details_store.h"
#include "storage/session_store_fixture.h"

namespace brevlin {
namespace {

const std::string detailsPath = "/data/Brevlin/session-details-v1.json";

SessionDetails full()
{
    SessionDetails details;
    details.pauses = {{Instant{Seconds{10.5}}, Instant{Seconds{20.25}}}};
    details.absences = {{Instant{Seconds{1}}, Instant{Seconds{2}}, AbsenceDecision::doNotCount},
                        {Instant{Seconds{3}}, std::nullopt, AbsenceDecision::undecided}};
    details.asRecorded = SessionRecord(session(1, 1000.0));
    details.asRecorded->intention = "写 \"R&D\"";
    details.beforeAbsences = SessionRecord(session(1, 900.0));
    return details;
}

class SessionDetailsTest : public SessionStoreTest
{
protected:
    SessionDetailsStore openDetails() { return {detailsPath, historyDisk()}; }
    void listen(SessionDetailsStore& store)
    {
        store.setObserver({[this] { ++m_changes; },
                           [this](const DocumentError& error) {
                               m_failures += error.isAboutContent ? "content " : "disk ";
                           }});
    }
    std::string& detailsFile() { return files.files[detailsPath]; }
};

TEST_F(SessionDetailsTest, everything_comes_back_and_nothing_known_leaves_no_file)
{
    EXPECT_EQ(defaultSessionDetailsPath("/data"), detailsPath);
    SessionDetailsStore store = openDetails();
    store.set(numberedId(1), full());
    store.set({{numberedId(2), full()}, {numberedId(3), {{}, full().absences, {}, {}}}});
    const auto before = store.all();
    EXPECT_EQ(openDetails().all(), before);
    EXPECT_EQ(openDetails().of(numberedId(1)), full());
    EXPECT_TRUE(openDetails().of(numberedId(9)).isEmpty());
    store.set({{numberedId(1), {}}, {numberedId(2), {}}, {numberedId(3), {}}});
    EXPECT_TRUE(files.files.empty());
    store.set(numberedId(1), full());
    store.clear();
    EXPECT_TRUE(files.files.empty());
}

TEST_F(SessionDetailsTest, a_text_of_another_form_is_refused_as_a_whole)
{
    const std::string good = *encodeSessionDetails({{numberedId(1), full()}});
    EXPECT_TRUE(decodeSessionDetails(good));
    const std::string id = R"({"details":[{"id":"00000000-0000-4000-8000-000000000011")";
    for (const std::string& text :
         {std::string{"{"}, std::string{R"({"details":[],"version":2})"}, std::string{R"({"version":1})"},
          id + R"(,"pauses":[{"start":2,"end":1}]}],"version":1})", id + R"(,"pauses":{}}],"version":1})",
          id + R"(,"absences":[{"start":2}]}],"version":1})",
          id + R"(,"absences":[{"start":2,"end":1,"decision":"keep"}]}],"version":1})",
          id + R"(,"absences":[{"start":2,"decision":"of a later release"}]}],"version":1})",
          id + R"(,"asRecorded":{"id":"x"}}],"version":1})",
          std::string{R"({"details":[{}],"version":1})"}}) {
        EXPECT_FALSE(decodeSessionDetails(text)) << text;
    }
    EXPECT_TRUE(decodeSessionDetails(id + R"(,"later":1,"pauses":null}],"version":1})"));
}

TEST_F(SessionDetailsTest, a_damaged_file_is_kept_before_the_first_write)
{
    detailsFile() = "{";
    SessionDetailsStore store = openDetails();
    EXPECT_TRUE(store.isRead());
    store.set(numberedId(1), full());
    EXPECT_EQ(files.files.at("/data/Brevlin/session-details-v1.unreadable-20260131T235959Z.json"), "{");
    EXPECT_EQ(openDetails().of(numberedId(1)), full());
}

TEST_F(SessionDetailsTest, what_the_disk_refuses_is_tried_again_and_told_once)
{
    detailsFile() = *encodeSessionDetails({{numberedId(1), full()}});
    files.unreadable = {detailsPath};
    SessionDetailsStore store = openDetails();
    listen(store);
    EXPECT_FALSE(store.isRead());
    store.set(numberedId(2), full());
    scheduler.advance(Seconds{60});
    EXPECT_EQ(m_failures, "disk ");
    files.unreadable.clear();
    scheduler.advance(RetryTimer::longestDelay);
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(store.all().size(), 2U);
    EXPECT_EQ(openDetails().all(), store.all());
    files.failures.failFrom(1);
    store.set(numberedId(3), full());
    store.set(numberedId(1), {});
    files.failures.failNothing();
    EXPECT_FALSE(store.isSaved());
    scheduler.advance(RetryTimer::longestDelay);
    EXPECT_TRUE(store.isSaved());
    EXPECT_EQ(openDetails().all(), store.all());
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(SessionDetailsTest, an_edit_of_the_history_is_one_write_or_none)
{
    file() = twoRecords();
    SessionStore store = open();
    std::uint64_t takenBack = 0;
    store.setObserver({{}, {}, [&](std::uint64_t number) {
                           takenBack = number;
                       }});
    SessionRecord moved(session(1, 5000.0));
    const std::vector<SessionRecord> placed{SessionRecord(session(4, 3000.0)),
                                            SessionRecord(session(3, 3000.0)), moved};
    store.edit({numberedId(2)}, placed);
    EXPECT_EQ(ids(store.sessions()), "11 14 13 ") << "equal ends in the order in which they came";
    EXPECT_EQ(test::differences(recordsOf(file()), store.sessions()), "");
    const std::string before = file();
    files.failures.failFrom(1);
    const std::uint64_t refused =
        store.edit({numberedId(3), numberedId(4)}, {SessionRecord(session(5, 1.0))});
    EXPECT_EQ(takenBack, refused);
    EXPECT_EQ(ids(store.sessions()), "11 14 13 ");
    EXPECT_EQ(store.focusCounts(), FocusCounts(store.sessions()));
    files.failures.failNothing();
    scheduler.advance(RetryTimer::longestDelay);
    EXPECT_EQ(file(), before);
    store.edit({}, {SessionRecord(session(2, 2000.25))});
    EXPECT_EQ(ids(open().sessions()), "11 14 13 12 ") << "a removed one may come back";
    EXPECT_EQ(store.focusCounts(), FocusCounts(store.sessions()));
}

} // namespace
} // namespace brevlin
