// Whatever text is to be imported, each of its rows becomes a record that can be kept, is known or is told;
// and what came in goes out in every form and comes in again as the same.

#include "exchange/history_export.h"
#include "exchange/history_import.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "storage/session_archive.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

using namespace brevlin;

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

const Instant now{Seconds{1e9}};
const TimeZone zone = timeZoneOf("Europe/Berlin");

std::string exported(const ImportPlan& plan, ExportFormat format)
{
    const ExportOptions options{
        format, {}, false, Calendar(zone, "en"), AppLanguage::english, [](const std::string&) {
            return zone;
        }};
    std::string text;
    require(bool(exportHistory(plan.records, plan.details, options, [&text](std::string_view piece) {
        text += piece;
        return true;
    })));
    return text;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(reinterpret_cast<const char*>(data), size);
    const auto plan = planImport(text, {}, {{}, now, zone, {}});
    if (!plan) {
        return 0;
    }
    for (const SessionRecord& record : plan->records) {
        require(record.actualStartAt <= record.endedAt && record.endedAt <= now);
    }
    require(bool(encodeSessionArchive(plan->records)));
    const auto again = planImport(text, plan->records, {{}, now, zone, {}});
    require(again && again->records.empty());
    exported(*plan, ExportFormat::timewarrior);
    const auto back =
        planImport(exported(*plan, ExportFormat::json), {}, {ImportFormat::json, now, zone, {}});
    require(back && back->records == plan->records && back->details == plan->details);
    const auto rows = planImport(exported(*plan, ExportFormat::csv), {}, {ImportFormat::csv, now, zone, {}});
    require(rows && rows->records.size() == plan->records.size());
    return 0;
}
