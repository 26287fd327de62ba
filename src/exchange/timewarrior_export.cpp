#include "core/intention.h"
#include "exchange/export_parts.h"
#include "storage/json/json_writer.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>
#include <vector>

namespace brevlin {

namespace {

// The form that `timew import` takes, https://timewarrior.net/reference/timew-import.1/. It ends at the first
// interval that overlaps another one.

struct Interval
{
    std::int64_t begin = 0; // Unix time
    std::int64_t end = 0;
    SharedText intention;
};

bool isCounted(const SessionRecord& record)
{
    const auto outcome = record.outcome();
    return record.phaseRawValue == TimerPhase::focus && outcome && isCompletion(*outcome);
}

// What did not count of the phase, in its order.
std::vector<DateInterval> gaps(const SessionDetails& details)
{
    std::vector<DateInterval> result = details.pauses;
    for (const Absence& absence : details.absences) {
        if (absence.decision == AbsenceDecision::doNotCount && absence.end) {
            result.push_back({absence.start, *absence.end});
        }
    }
    std::sort(result.begin(), result.end(),
              [](const DateInterval& left, const DateInterval& right) { return left.start < right.start; });
    return result;
}

class TimewarriorExporter final : public RecordExporter
{
public:
    void begin(std::string& text) override { text += '['; }

    bool takes(const SessionRecord& record) const override { return isCounted(record); }

    bool add(const SessionRecord& record, const SessionDetails& details, std::string& /*text*/) override
    {
        // Pauses of older records are known by their length alone: then the end has to give way.
        Seconds left = std::max(record.effectiveDuration, Seconds::zero());
        Instant at = record.actualStartAt;
        for (const DateInterval& gap : gaps(details)) {
            put(at, std::min(gap.start, record.endedAt), left, record.intention);
            at = std::max(at, gap.end);
        }
        put(at, record.endedAt, left, record.intention);
        return true;
    }

    bool end(PieceBuffer& buffer) override
    {
        std::stable_sort(
            m_intervals.begin(), m_intervals.end(),
            [](const Interval& left, const Interval& right) { return left.begin < right.begin; });
        const char* separator = "\n";
        std::int64_t free = INT64_MIN;
        for (const Interval& interval : m_intervals) {
            const std::int64_t begin = std::max(interval.begin, free);
            if (begin < interval.end) {
                free = interval.end;
                buffer.text() += std::exchange(separator, ",\n");
                if (!write(begin, interval, buffer.text()) || !buffer.handOn()) {
                    return false;
                }
            }
        }
        buffer.text() += "\n]\n";
        return true;
    }
    std::string description() const override { return m_description; }

private:
    void put(Instant begin, Instant end, Seconds& left, const SharedText& intention)
    {
        const Seconds length = std::min(end - begin, left);
        if (length > Seconds::zero()) {
            left -= length;
            m_intervals.push_back({nearestUnixSecond(begin), nearestUnixSecond(begin + length), intention});
        }
    }

    bool write(std::int64_t begin, const Interval& interval, std::string& text)
    {
        JsonWriter writer;
        writer.beginObject();
        writeTime(writer, "start", begin);
        writeTime(writer, "end", interval.end);
        if (const auto tags = labels(interval.intention.view()); !tags.empty()) {
            writer.key("tags");
            writer.beginArray();
            for (const std::string& tag : tags) {
                writer.value(std::string_view{tag});
            }
            writer.endArray();
        }
        if (!interval.intention.view().empty()) {
            writer.field("annotation", interval.intention.view());
        }
        writer.endObject();
        const auto object = std::move(writer).finish();
        if (!object) {
            m_description = object.error().description;
            return false;
        }
        text += *object;
        return true;
    }

    void writeTime(JsonWriter& writer, const char* key, std::int64_t unixSecond)
    {
        m_time.clear();
        appendUtcSecond(m_time, unixSecond);
        writer.field(key, std::string_view{m_time});
    }

    std::vector<Interval> m_intervals;
    std::string m_time;
    std::string m_description;
};

} // namespace

std::unique_ptr<RecordExporter> makeTimewarriorExporter()
{
    return std::make_unique<TimewarriorExporter>();
}

} // namespace brevlin
