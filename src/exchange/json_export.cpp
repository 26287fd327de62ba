#include "exchange/export_parts.h"
#include "exchange/json_fields.h"
#include "storage/json/json_writer.h"

#include <utility>

namespace brevlin {

namespace {

class JsonExporter final : public RecordExporter
{
public:
    explicit JsonExporter(const ExportOptions& options) : m_zones(options.zones) {}

    void begin(std::string& text) override { text += '['; }

    bool add(const SessionRecord& record, const SessionDetails& details, std::string& text) override
    {
        JsonWriter writer;
        writer.beginObject();
        writeRecord(writer, record);
        writeDetails(writer, details, m_zones.zone(record.timeZoneIdentifierAtStart.view()));
        writeEarlier(writer, jsonField::asRecorded, details.asRecorded);
        writeEarlier(writer, jsonField::beforeAbsences, details.beforeAbsences);
        writer.endObject();
        auto object = std::move(writer).finish();
        if (!object) {
            m_description = object.error().description;
            return false;
        }
        text += std::exchange(m_isFirst, false) ? "\n" : ",\n";
        text += *object;
        return true;
    }

    bool end(PieceBuffer& buffer) override
    {
        buffer.text() += "\n]\n";
        return true;
    }
    std::string description() const override { return m_description; }

private:
    void writeTime(JsonWriter& writer, const char* key, Instant instant, const TimeZoneRules& zone)
    {
        m_time.clear();
        appendInstant(m_time, instant, zone);
        writer.field(key, std::string_view{m_time});
    }

    void writeRecord(JsonWriter& writer, const SessionRecord& record)
    {
        const TimeZoneRules& zone = m_zones.zone(record.timeZoneIdentifierAtStart.view());
        writer.field(jsonField::id, record.id);
        writer.field(jsonField::phase, record.phaseRawValue.text());
        writer.field(jsonField::outcome, record.outcomeRawValue.text());
        writeTime(writer, jsonField::start, record.actualStartAt, zone);
        writeTime(writer, jsonField::end, record.endedAt, zone);
        writer.field(jsonField::effectiveSeconds, record.effectiveDuration);
        writer.field(jsonField::plannedSeconds, record.plannedDuration);
        writer.field(jsonField::pausedSeconds, record.pauseDuration);
        writer.field(jsonField::interruptions, record.interruptionCount);
        writer.field(jsonField::intention, record.intention.view());
        writer.field(jsonField::timeZone, record.timeZoneIdentifierAtStart.view());
        writeTime(writer, jsonField::plannedStart, record.plannedStartAt, zone);
        writeTime(writer, jsonField::scheduledEnd, record.scheduledEndAt, zone);
        writer.field(jsonField::cycle, record.cycleIndex);
        writer.field(jsonField::completedAway, record.completedWhileAway);
    }

    void writeEarlier(JsonWriter& writer, const char* key, const std::optional<SessionRecord>& record)
    {
        if (record) {
            writer.key(key);
            writer.beginObject();
            writeRecord(writer, *record);
            writer.endObject();
        }
    }

    void writeDetails(JsonWriter& writer, const SessionDetails& details, const TimeZoneRules& zone)
    {
        writer.key(jsonField::pauses);
        writer.beginArray();
        for (const DateInterval& pause : details.pauses) {
            writer.beginObject();
            writeTime(writer, jsonField::start, pause.start, zone);
            writeTime(writer, jsonField::end, pause.end, zone);
            writer.endObject();
        }
        writer.endArray();
        writer.key(jsonField::absences);
        writer.beginArray();
        for (const Absence& absence : details.absences) {
            writer.beginObject();
            writeTime(writer, jsonField::start, absence.start, zone);
            if (absence.end) {
                writeTime(writer, jsonField::end, *absence.end, zone);
            }
            writer.field(jsonField::decision, absence.decision);
            writer.endObject();
        }
        writer.endArray();
    }

    ZoneBook m_zones;
    bool m_isFirst = true;
    std::string m_time;
    std::string m_description;
};

} // namespace

std::unique_ptr<RecordExporter> makeJsonExporter(const ExportOptions& options)
{
    return std::make_unique<JsonExporter>(options);
}

} // namespace brevlin
