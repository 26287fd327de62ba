#include "exchange/export_parts.h"
#include "exchange/json_fields.h"
#include "exchange/record_json.h"
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
        writeRecordFields(writer, record, zoneOf(record));
        writeDetails(writer, details, zoneOf(record));
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
    const TimeZoneRules& zoneOf(const SessionRecord& record)
    {
        return m_zones.zone(record.timeZoneIdentifierAtStart.view());
    }

    void writeEarlier(JsonWriter& writer, const char* key, const std::optional<SessionRecord>& record)
    {
        if (record) {
            writer.key(key);
            writer.beginObject();
            writeRecordFields(writer, *record, zoneOf(*record));
            writer.endObject();
        }
    }

    static void writeDetails(JsonWriter& writer, const SessionDetails& details, const TimeZoneRules& zone)
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
    std::string m_description;
};

} // namespace

std::unique_ptr<RecordExporter> makeJsonExporter(const ExportOptions& options)
{
    return std::make_unique<JsonExporter>(options);
}

} // namespace brevlin
