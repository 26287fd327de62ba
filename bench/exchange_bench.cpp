// What it costs to hand a long history to other programs and to take one in: goals in time, and ratios to the
// writing of the history's own document.

#include "exchange/history_export.h"
#include "exchange/history_import.h"
#include "long_history.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "report.h"
#include "storage/session_archive.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace brevlin;
using namespace brevlin::bench;

constexpr int repetitions = 9;

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "exchange_bench: %s\n", what);
        std::exit(1);
    }
}

std::string exported(const std::vector<SessionRecord>& records, const SessionDetailsById& details,
                     const ExportOptions& options)
{
    std::string text;
    require(bool(exportHistory(records, details, options,
                               [&text](std::string_view piece) {
                                   text += piece;
                                   return true;
                               })),
            "the history cannot be exported");
    return text;
}

} // namespace

int main()
{
    const Instant now{Seconds{8e8}};
    std::vector<SessionRecord> records = longHistory(now);
    SessionDetailsById details;
    for (std::size_t index = 0; index < records.size(); ++index) {
        SessionRecord& record = records[index];
        record.actualStartAt = record.plannedStartAt = record.endedAt - Seconds{1500.1};
        record.intention = index % 3 == 0 ? "Write chapter 7, \"again\" #book" : "写第三章 #写作";
        if (index % 4 == 0) {
            details[record.id].pauses = {{record.actualStartAt, record.actualStartAt + Seconds{60}}};
        }
    }
    ExportOptions options{ExportFormat::csv,    {},        false, Calendar(timeZoneOf("Europe/Berlin"), "en"),
                          AppLanguage::english, timeZoneOf};
    options.selection.first = LocalDay{};
    for (const ExportFormat format : allCases<ExportFormat>()) {
        options.format = format;
        std::vector<double> times;
        std::string text;
        for (int turn = 0; turn < repetitions; ++turn) {
            times.push_back(seconds([&] { text = exported(records, details, options); }));
        }
        printTime(("export 100,000 records as " + std::string(rawValue(format))).c_str(), times, 1.0);
        if (format == ExportFormat::ics) {
            continue; // it goes out only
        }
        for (const bool isKnown : {false, true}) {
            times.clear();
            for (int turn = 0; turn < repetitions; ++turn) {
                times.push_back(seconds([&] {
                    const auto plan = planImport(text, isKnown ? records : std::vector<SessionRecord>(),
                                                 {{}, now, timeZoneOf("Europe/Berlin"), {}});
                    require(plan && plan->unreadable.empty(), "the history cannot be imported");
                }));
            }
            printTime(("import of it" + std::string(isKnown ? ", all known" : ", all new")).c_str(), times,
                      2.0);
        }
    }
    return 0;
}
