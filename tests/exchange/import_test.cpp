#include "exchange/csv_cells.h"
#include "exchange/exchange_fixture.h"
#include "exchange/history_import.h"
#include "support/record_differences.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace brevlin {
namespace {

const Instant now{Seconds{8e8}}; // 2026-05-09

ImportPlan imported(std::string_view text, const std::vector<SessionRecord>& history = {},
                    const char* zone = "Europe/Berlin", std::optional<ImportFormat> format = {})
{
    auto plan = planImport(text, history, {format, now, timeZoneOf(zone), {}});
    return plan ? *std::move(plan) : ImportPlan{{}, {}, 999, {}};
}

/// Start, end and intention of each, the latest first, then what is known and what is unreadable.
std::string told(const ImportPlan& plan)
{
    std::string text;
    for (const SessionRecord& record : plan.records) {
        appendInstant(text, record.actualStartAt, *timeZoneOf("UTC"));
        text += " ";
        appendInstant(text, record.endedAt, *timeZoneOf("UTC"));
        text += " " + std::string(record.intention.view()) + "\n";
    }
    text += "known " + std::to_string(plan.knownCount);
    for (const UnreadableRow& row : plan.unreadable) {
        text += ", " + std::to_string(row.line) + " " + std::string(rawValue(row.problem));
    }
    return text;
}

/// Any history at all whose phases ended before now.
class RandomHistory
{
public:
    explicit RandomHistory(unsigned seed) : m_random(seed)
    {
        for (int index = 0; index < 60; ++index) {
            SessionRecord record = makeRecord();
            if (upTo(3) == 0) {
                SessionDetails known;
                known.pauses = {{record.actualStartAt, record.endedAt - Seconds{1.0 / 3.0}}};
                known.absences = {{record.actualStartAt, record.endedAt, AbsenceDecision::doNotCount},
                                  {record.endedAt, std::nullopt, AbsenceDecision::undecided}};
                known.asRecorded = makeRecord();
                known.beforeAbsences = makeRecord();
                details.emplace(record.id, known);
            }
            records.push_back(std::move(record));
        }
        std::stable_sort(records.begin(), records.end(), endedLater);
    }

    std::vector<SessionRecord> records;
    SessionDetailsById details;

private:
    int upTo(int limit) { return std::uniform_int_distribution<int>(0, limit)(m_random); }
    double fraction() { return std::uniform_real_distribution<double>(0.0, 1.0)(m_random); }
    std::string text()
    {
        static const std::vector<std::string> parts{
            "=", "+",    "-", "@",      "'",         "\"", ",",  "\r\n", "\n",           "\r", "\t",
            " ", "专注", "🍅", "#label", "e\xCC\x81", ";",  "\\", "a",    "\xEF\xBB\xBF", "1e5"};
        std::string result;
        for (int count = upTo(5); count > 0; --count) {
            result += parts[static_cast<std::size_t>(upTo(static_cast<int>(parts.size()) - 1))];
        }
        return result;
    }
    SessionRecord makeRecord()
    {
        static constexpr std::array zones{"Asia/Shanghai", "America/St_Johns", "Nowhere/At_All", ""};
        SessionRecord record;
        record.id = Uuid::random();
        // Some end at the same instant.
        record.endedAt = upTo(4) == 0 ? Instant{Seconds{7e8}} : now - Seconds{fraction() * 2e9};
        record.actualStartAt = record.endedAt - Seconds{fraction() * 1e4};
        record.plannedStartAt = record.actualStartAt - Seconds{fraction()};
        record.scheduledEndAt = record.endedAt + Seconds{fraction()};
        record.effectiveDuration = Seconds{fraction() * 1e4};
        record.plannedDuration = Seconds{fraction() * 1e-6};
        record.pauseDuration = Seconds{static_cast<double>(upTo(100))};
        record.phaseRawValue =
            upTo(5) == 0 ? StoredRawValue<TimerPhase>("x" + text()) : TimerPhase::longBreak;
        record.outcomeRawValue =
            upTo(5) == 0 ? StoredRawValue<SessionOutcome>("@" + text()) : SessionOutcome::completedWhileAway;
        record.cycleIndex = upTo(9);
        record.interruptionCount = upTo(9);
        record.intention = text();
        record.timeZoneIdentifierAtStart = zones.at(static_cast<std::size_t>(upTo(3)));
        record.completedWhileAway = upTo(1) == 0;
        return record;
    }

    std::mt19937_64 m_random;
};

TEST(Import, of_an_exported_history_into_an_empty_one_is_the_same_history)
{
    for (unsigned seed = 0; seed < 200; ++seed) {
        RandomHistory history(seed);
        const std::string json =
            test::exported(history.records, test::exportOptions(ExportFormat::json), history.details);
        const ImportPlan plan = imported(json);
        ASSERT_EQ(test::differences(plan.records, history.records), "") << seed;
        ASSERT_TRUE(plan.details == history.details) << seed;
        EXPECT_EQ(told(imported(json, history.records)), "known 60");

        auto options = test::exportOptions(ExportFormat::csv);
        options.hasByteOrderMark = seed % 2 == 0;
        const ImportPlan fromCsv = imported(test::exported(history.records, options), {}, "");
        // What has no column follows from what has one.
        for (SessionRecord& record : history.records) {
            record.plannedStartAt = record.actualStartAt;
            record.scheduledEndAt = record.actualStartAt + record.plannedDuration + record.pauseDuration;
            record.cycleIndex = 1;
            record.completedWhileAway = record.outcomeRawValue == SessionOutcome::completedWhileAway;
        }
        ASSERT_EQ(told(fromCsv), told({history.records, {}, 0, {}})) << seed;
        ASSERT_EQ(test::differences(fromCsv.records, history.records), "") << seed;
    }
}

TEST(Import, takes_one_odd_row_for_no_more_than_that)
{
    constexpr const char* header = "id,phase,outcome,start,end,effective_seconds,planned_seconds,paused_"
                                   "seconds,interruptions,intention,time_zone\n";
    const std::string good = "00000000-0000-4000-8000-000000000001,focus,completed,2026-01-31T09:00:00+01:00,"
                             "2026-01-31T09:25:00+01:00,1500,1500,0,0,\"two\nlines\",Europe/Berlin\n";
    const auto with = [&good](const std::string& from, const std::string& to) {
        std::string row = good;
        return row.replace(row.find(from), from.size(), to);
    };
    EXPECT_EQ(
        told(imported(header + with("00001", "0000x") + with("31T09:25", "32T09:25") +
                      with("09:25", "08:25") + with("2026-01-31T09:25", "2027-01-31T09:25") + "\n" +
                      with("1500", "x") + with("1500", "inf") + with("completed,", "") + with("lines\"", "") +
                      with("\"two", "\"two\"") + with("two", "\xFF") + good + good)),
        "2026-01-31T08:00:00+00:00 2026-01-31T08:25:00+00:00 two\nlines\nknown 1, 2 notAnIdentifier, 4 "
        "notADate, "
        "6 endsBeforeStart, 8 endsInFuture, 11 notANumber, 13 notANumber, 15 malformed, 17 malformed, "
        "18 malformed, 19 malformed, 20 malformed, 21 malformed");

    const std::string ours = R"({"id":"00000000-0000-4000-8000-00000000000N","start":"2026-01-31T09:00:00Z",)"
                             R"("end":"2026-01-31T09:25:00Z","effective_seconds":1})";
    const auto element = [&ours](const std::string& from, const std::string& to) {
        std::string row = ours;
        return row.replace(row.find(from), from.size(), to);
    };
    EXPECT_EQ(told(imported("[\n" + element("0N", "01") + ",\n" + element("25:00Z\"", "25:00Z") + ",\n" +
                            element("1}", "1") + ",\n" + element("0N", "02") + ",\n" + element("0N", "02") +
                            ",\n{\n" + element("0N", "03").substr(1) + ", 7,\n" + ours + ", {\"start\":1}, " +
                            element("0N", "04").replace(100, 0, "") + "\n")),
              "2026-01-31T09:00:00+00:00 2026-01-31T09:25:00+00:00 \n"
              "2026-01-31T09:00:00+00:00 2026-01-31T09:25:00+00:00 \n"
              "2026-01-31T09:00:00+00:00 2026-01-31T09:25:00+00:00 \n"
              "2026-01-31T09:00:00+00:00 2026-01-31T09:25:00+00:00 \n"
              "known 1, 3 malformed, 4 malformed, 8 malformed, 9 notAnIdentifier, 9 notADate");
}

TEST(Import, of_other_programs_adds_nothing_the_second_time_in_any_zone)
{
    struct Case
    {
        const char* text;
        const char* expected;
    };
    const Case cases[] = {
        {"\xEF\xBB\xBFUser,Email,Project,Description,Start date,Start time,End date,End "
         "time,Duration,Tags\r\n"
         "A,a@b.c,Book,\"Write, \"\"x\"\"\",2026-01-31,09:00:00,2026-01-31,09:25:00,18:25 min,\"deep, two "
         "words\"\r\n"
         "A,a@b.c,,,2026-01-31,23:50:00,2026-02-01,00:10:00,-1:00:00,\r\n"
         "A,a@b.c,,again,2026-01-31,09:00:00,2026-01-31,09:25:00,00:25:00,\r\n"
         "A,a@b.c,,,2026-01-31,09:00:00,,,00:25:00,\r\n"
         "A,a@b.c,,,01/31/2026,09:00:00,01/31/2026,09:25:00,00:25:00,\r\n",
         "2026-01-31T22:50:00+00:00 2026-01-31T23:10:00+00:00 \n"
         "2026-01-31T08:00:00+00:00 2026-01-31T08:25:00+00:00 Write, \"x\" #Book #deep\n"
         "known 1, 5 stillRuns, 6 notADate"},
        {"Start Date;Start Time;Stop Date;Stop Time;Description\n"
         "25.10.2025;02:50;25.10.2025;3:10:00 AM;\n"
         "2025/10/26;02:50 AM;2025/10/26;02:10:00 am;the clock goes back\n",
         "2025-10-26T00:50:00+00:00 2025-10-26T01:10:00+00:00 the clock goes back\n"
         "2025-10-25T00:50:00+00:00 2025-10-25T01:10:00+00:00 \nknown 0"},
        {"[\n{\"id\":2,\"start\":\"20260131T080000Z\",\"end\":\"20260131T082500Z\",\"tags\":[\"Write "
         "it\",\"book\"]},\n"
         "{\"id\":1,\"start\":\"20260131T083000Z\"},\n"
         "{\"id\":3,\"start\":\"20260131T090000Z\",\"end\":\"20260131T092500Z\",\"tags\":[\"b\",\"c\"],"
         "\"annotation\":\"A #b\"}\n]\n",
         "2026-01-31T09:00:00+00:00 2026-01-31T09:25:00+00:00 A #b #c\n"
         "2026-01-31T08:00:00+00:00 2026-01-31T08:25:00+00:00 Write it #book\nknown 0, 3 stillRuns"}};
    for (const Case& c : cases) {
        const ImportPlan first = imported(c.text);
        EXPECT_EQ(told(first), c.expected);
        for (const char* zone : {"Europe/Berlin", "Asia/Tokyo", "America/New_York"}) {
            EXPECT_TRUE(imported(c.text, first.records, zone).records.empty()) << zone;
        }
        // Known by its times too, whatever identifier it has.
        std::vector<SessionRecord> others = first.records;
        for (SessionRecord& record : others) {
            record.id = Uuid::random();
            record.endedAt += Seconds{0.3};
        }
        EXPECT_TRUE(imported(c.text, others).records.empty());
        for (const SessionRecord& record : first.records) {
            EXPECT_EQ(record.effectiveDuration, record.endedAt - record.actualStartAt);
            EXPECT_EQ(record.timeZoneIdentifierAtStart, "Europe/Berlin");
            EXPECT_TRUE(record.phaseRawValue == TimerPhase::focus &&
                        record.outcomeRawValue == SessionOutcome::completed);
        }
    }
}

TEST(Import, refuses_what_is_none_of_its_forms_and_ends_when_it_is_told_to)
{
    for (const char* text : {"", "\n", "{\"sessions\":[],\"version\":1}", "a,b\n1,2\n", "start,stop\n"}) {
        EXPECT_EQ(planImport(text, {}, {{}, now, timeZoneOf("UTC"), {}}).error().reason,
                  ImportError::Reason::unknownFormat)
            << text;
    }
    EXPECT_EQ(planImport("[]", {}, {ImportFormat::csv, now, timeZoneOf("UTC"), {}}).error().reason,
              ImportError::Reason::unknownFormat);
    EXPECT_EQ(told(imported("[]")), "known 0");
    std::string many = "start,end\n";
    for (int row = 0; row < 5000; ++row) {
        many += "2026-01-31T09:00:00Z,2026-01-31T09:25:00Z\n";
    }
    double last = 0.0;
    const ImportOptions options{{}, now, timeZoneOf("UTC"), [&last](double done) {
                                    EXPECT_GT(done, last);
                                    last = done;
                                    return done < 0.5;
                                }};
    EXPECT_EQ(planImport(many, {}, options).error().reason, ImportError::Reason::cancelled);
    EXPECT_NEAR(last, 0.6, 0.01);
}

} // namespace
} // namespace brevlin
