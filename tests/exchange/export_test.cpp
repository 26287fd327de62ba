#include "core/statistics_calculator.h"
#include "exchange/exchange_fixture.h"
#include "exchange/instant_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

namespace brevlin {
namespace {

using testing::ElementsAre;

Instant at(const char* text)
{
    return instantFromText(text).value();
}

SessionRecord record(const char* start, const char* end, const char* intention)
{
    SessionRecord result;
    result.id = *Uuid::fromText("00000000-0000-4000-8000-000000000001");
    result.actualStartAt = at(start);
    result.endedAt = at(end);
    result.effectiveDuration = result.endedAt - result.actualStartAt;
    result.plannedDuration = Seconds{1500};
    result.intention = intention;
    result.timeZoneIdentifierAtStart = "Asia/Shanghai";
    return result;
}

TEST(InstantText, is_told_with_the_offset_of_the_zone_and_read_back_as_the_same_number)
{
    ZoneBook zones(timeZoneOf);
    const std::pair<const char*, const char*> cases[] = {{"Asia/Shanghai", "2026-03-29T09:00:00.1+08:00"},
                                                         {"Europe/Berlin", "2026-03-29T03:00:00+02:00"},
                                                         {"Europe/Berlin", "2026-03-29T01:59:59.75+01:00"},
                                                         {"America/St_Johns", "2026-01-01T00:00:00-03:30"},
                                                         {"no zone", "2000-12-31T23:59:59.875+00:00"},
                                                         {"Asia/Kathmandu", "1999-02-28T12:00:00.3+05:45"},
                                                         {"UTC", "+11507-08-15T05:20:00+00:00"},
                                                         {"UTC", "0000-02-29T00:00:00.5+00:00"}};
    for (const auto& [zone, text] : cases) {
        std::string told;
        appendInstant(told, at(text), zones.zone(zone));
        EXPECT_EQ(told, text);
    }
    std::mt19937_64 random(1);
    for (int turn = 0; turn < 20'000; ++turn) {
        const double limit = std::pow(10.0, std::uniform_real_distribution<double>(-9, 11)(random));
        const Instant instant{Seconds{std::uniform_real_distribution<double>(-limit, limit)(random)}};
        std::string told;
        appendInstant(told, instant, zones.zone(turn % 2 == 0 ? "Asia/Kathmandu" : "America/St_Johns"));
        ASSERT_EQ(instantFromText(told), instant) << told;
    }
    EXPECT_EQ(at("20260131T090000Z"), at("2026-01-31T10:00+0100"));
    for (const char* text :
         {"", "2026-02-29T00:00:00Z", "2026-01-31T09:00:00", "2026-01-31", "2026-1-31T09:00:00Z",
          "2026-01-31T24:00:00Z", "2026-01-31T09:60:00Z", "2026-01-31T09:00:00.Z", "2026-01-31T09:00:00Z ",
          "2026-13-01T09:00:00Z", "2026-01-31T09:00:00+1"}) {
        EXPECT_EQ(instantFromText(text), std::nullopt) << text;
    }
}

TEST(Export, csv_guards_quotes_and_tells_the_zone_of_the_start)
{
    SessionRecord odd = record("2026-01-31T01:00:00.5Z", "2026-01-31T01:25:00Z", "=1+1, \"so\"\n专注");
    odd.phaseRawValue = StoredRawValue<TimerPhase>("nap");
    odd.outcomeRawValue = StoredRawValue<SessionOutcome>("@lost");
    odd.interruptionCount = 2;
    auto options = test::exportOptions(ExportFormat::csv);
    options.hasByteOrderMark = true;
    EXPECT_EQ(test::exported({odd, record("2026-01-30T01:00:00Z", "2026-01-30T01:25:00Z", "'=")}, options),
              "\xEF\xBB\xBFid,phase,outcome,start,end,effective_seconds,planned_seconds,paused_seconds,"
              "interruptions,intention,time_zone\r\n"
              "00000000-0000-4000-8000-000000000001,focus,completed,2026-01-30T09:00:00+08:00,"
              "2026-01-30T09:25:00+08:00,1500,1500,0,0,''=,Asia/Shanghai\r\n"
              "00000000-0000-4000-8000-000000000001,nap,'@lost,2026-01-31T09:00:00.5+08:00,"
              "2026-01-31T09:25:00+08:00,1499.5,1500,0,2,\"'=1+1, \"\"so\"\"\n专注\",Asia/Shanghai\r\n");
}

TEST(Export, ics_has_a_transparent_event_for_each_focus_phase_folded_and_escaped)
{
    SessionRecord rest = record("2026-01-31T02:00:00Z", "2026-01-31T02:05:00Z", "");
    rest.phaseRawValue = TimerPhase::shortBreak;
    const SessionRecord focus =
        record("2026-01-31T01:00:00Z", "2026-01-31T01:25:00Z",
               "写一二三四五六七八九十一二三四五六七八九十一二三四五六七八九十; a, b\\ \n\x01!");
    std::string text =
        test::exported({rest, focus, record("2026-01-31T00:00:00Z", "2026-01-31T00:00:00.1Z", "")},
                       test::exportOptions(ExportFormat::ics), {{focus.id, {{}, {}, focus, {}}}});
    // Where a line is folded is the library's choice.
    for (std::size_t begin = 0; begin < text.size(); begin = text.find('\n', begin) + 1) {
        const std::size_t end = text.find("\r\n", begin);
        EXPECT_LE(end - begin, 75U);
        EXPECT_NE(static_cast<unsigned char>((text + "..")[end + 3]) & 0xC0U, 0x80U) << "within a character";
    }
    for (std::size_t fold = text.find("\r\n "); fold != std::string::npos; fold = text.find("\r\n ")) {
        text.erase(fold, 3);
    }
    EXPECT_EQ(
        text,
        "BEGIN:VCALENDAR\r\nPRODID:-//Quillmark//Brevlin//EN\r\nVERSION:2.0\r\n"
        "BEGIN:VEVENT\r\nUID:00000000-0000-4000-8000-000000000001\r\nDTSTAMP:20260131T000000Z\r\n"
        "DTSTART:20260131T000000Z\r\nSUMMARY:Focus\r\nTRANSP:TRANSPARENT\r\nSEQUENCE:1\r\nEND:VEVENT\r\n"
        "BEGIN:VEVENT\r\nUID:00000000-0000-4000-8000-000000000001\r\nDTSTAMP:20260131T012500Z\r\n"
        "DTSTART:20260131T010000Z\r\nDTEND:20260131T012500Z\r\n"
        "SUMMARY:写一二三四五六七八九十一二三四五六七八九十一二三四五六七八九十\\; a\\, b\\\\ \\n !\r\n"
        "TRANSP:TRANSPARENT\r\nSEQUENCE:1\r\nEND:VEVENT\r\nEND:VCALENDAR\r\n");
}

TEST(Export, timewarrior_gets_what_counts_without_pauses_or_overlaps)
{
    SessionRecord paused = record("2026-01-31T01:00:00Z", "2026-01-31T01:40:00Z", "Write #book");
    paused.effectiveDuration = Seconds{1500};
    SessionRecord olderPaused = record("2026-01-31T01:30:00Z", "2026-01-31T02:30:00Z", "");
    olderPaused.id = Uuid::random();
    olderPaused.effectiveDuration = Seconds{1800};
    SessionRecord skipped = record("2026-01-31T03:00:00Z", "2026-01-31T03:10:00Z", "");
    skipped.outcomeRawValue = SessionOutcome::skipped;
    const SessionDetailsById details{
        {paused.id,
         {{{at("2026-01-31T01:10:00Z"), at("2026-01-31T01:15:00Z")}},
          {{at("2026-01-31T01:20:00Z"), at("2026-01-31T01:30:00Z"), AbsenceDecision::doNotCount},
           {at("2026-01-31T01:31:00Z"), at("2026-01-31T01:35:00Z"), AbsenceDecision::keep}},
          {},
          {}}}};
    EXPECT_EQ(
        test::exported({skipped, olderPaused, paused}, test::exportOptions(ExportFormat::timewarrior),
                       details),
        "[\n"
        R"({"start":"20260131T010000Z","end":"20260131T011000Z","tags":["book"],"annotation":"Write #book"},)"
        "\n"
        R"({"start":"20260131T011500Z","end":"20260131T012000Z","tags":["book"],"annotation":"Write #book"},)"
        "\n"
        R"({"start":"20260131T013000Z","end":"20260131T014000Z","tags":["book"],"annotation":"Write #book"},)"
        "\n"
        R"({"start":"20260131T014000Z","end":"20260131T020000Z"})"
        "\n]\n");
}

TEST(Export, adds_up_to_the_statistics_of_its_period)
{
    const Calendar calendar(timeZoneOf("America/New_York"), "en");
    std::mt19937_64 random(7);
    std::vector<SessionRecord> records;
    for (int index = 0; index < 3000; ++index) {
        SessionRecord each;
        each.id = Uuid::random();
        each.endedAt = Instant{Seconds{8e8 - index * 1300.0}};
        each.actualStartAt = each.endedAt - Seconds{1200};
        each.effectiveDuration = Seconds{std::uniform_real_distribution<double>(0, 1200)(random)};
        each.phaseRawValue = index % 3 == 0 ? TimerPhase::shortBreak : TimerPhase::focus;
        each.outcomeRawValue = index % 7 == 0 ? SessionOutcome::skipped : SessionOutcome::completed;
        records.push_back(each);
    }
    const auto period = StatisticsCalculator::calculatePeriod(records, StatisticsGranularity::month,
                                                              records[900].endedAt, calendar);
    for (const ExportFormat format : {ExportFormat::csv, ExportFormat::timewarrior}) {
        auto options = test::exportOptions(format, "America/New_York");
        options.selection = {calendar.localDay(period.interval.start),
                             calendar.dayBefore(calendar.localDay(period.interval.end)),
                             {TimerPhase::focus}};
        const std::string text = test::exported(records, options);
        double sum = 0.0;
        std::int64_t count = 0;
        if (format == ExportFormat::csv) {
            for (auto row = text.find(",completed,"); row != std::string::npos;
                 row = text.find(",completed,", row + 1), ++count) {
                const auto end = text.find(',', text.find(',', row + 11) + 1);
                sum += std::stod(text.substr(end + 1));
            }
        } else {
            for (auto row = text.find("\"start\":\""); row != std::string::npos;
                 row = text.find("\"start\":\"", row + 1), ++count) {
                sum += (at(text.substr(text.find("\"end\":\"", row) + 7, 16).c_str()) -
                        at(text.substr(row + 9, 16).c_str()))
                           .count();
            }
        }
        EXPECT_EQ(count, period.completedPomodoros);
        EXPECT_NEAR(sum / 60.0, static_cast<double>(period.totalFocusMinutes), 1.0);
        EXPECT_EQ(text.find("shortBreak"), std::string::npos);
    }
}

TEST(Export, ends_when_the_sink_wants_no_more)
{
    const std::vector<SessionRecord> records(5000,
                                             record("2026-01-31T01:00:00Z", "2026-01-31T01:25:00Z", "x"));
    for (const ExportFormat format : allCases<ExportFormat>()) {
        int pieces = 0;
        const auto result =
            exportHistory(records, {}, test::exportOptions(format), [&pieces](std::string_view piece) {
                EXPECT_LT(piece.size(), 100'000U) << "it comes in pieces";
                ++pieces;
                return false;
            });
        ASSERT_FALSE(result);
        EXPECT_EQ(result.error(), ExportError{}) << rawValue(format);
        EXPECT_EQ(pieces, 1) << rawValue(format);
    }
}

} // namespace
} // namespace brevlin
