#include "exchange/csv_cells.h"
#include "exchange/csv_columns.h"
#include "exchange/export_parts.h"

#include <array>
#include <charconv>

namespace brevlin {

namespace {

// An IEEE double in plain digits.
constexpr std::size_t longestNumber = 400;

template <typename Number>
void appendNumber(std::string& text, Number number)
{
    std::array<char, longestNumber> place{};
    text.append(place.data(), std::to_chars(place.data(), place.data() + place.size(), number).ptr);
}

void appendNumber(std::string& text, Seconds length)
{
    std::array<char, longestNumber> place{};
    text.append(place.data(), std::to_chars(place.data(), place.data() + place.size(), length.count(),
                                            std::chars_format::fixed)
                                  .ptr);
}

class CsvExporter final : public RecordExporter
{
public:
    explicit CsvExporter(const ExportOptions& options)
        : m_zones(options.zones), m_hasByteOrderMark(options.hasByteOrderMark)
    {}

    void begin(std::string& text) override
    {
        text += m_hasByteOrderMark ? byteOrderMark : "";
        for (const std::string_view column : csvColumns) {
            text += column == csvColumns.front() ? "" : ",";
            text += column;
        }
        text += "\r\n";
    }

    bool add(const SessionRecord& record, const SessionDetails& /*details*/, std::string& text) override
    {
        const TimeZoneRules& zone = m_zones.zone(record.timeZoneIdentifierAtStart.view());
        text += record.id.text();
        appendText(text, record.phaseRawValue.text());
        appendText(text, record.outcomeRawValue.text());
        appendTime(text, record.actualStartAt, zone);
        appendTime(text, record.endedAt, zone);
        appendNumber(text += ',', record.effectiveDuration);
        appendNumber(text += ',', record.plannedDuration);
        appendNumber(text += ',', record.pauseDuration);
        appendNumber(text += ',', record.interruptionCount);
        appendText(text, record.intention.view());
        appendText(text, record.timeZoneIdentifierAtStart.view());
        text += "\r\n";
        return true;
    }

    bool end(PieceBuffer& /*buffer*/) override { return true; }

private:
    static void appendText(std::string& text, std::string_view content)
    {
        appendTextCell(text += ',', content);
    }
    void appendTime(std::string& text, Instant instant, const TimeZoneRules& zone)
    {
        m_time.clear();
        appendInstant(m_time, instant, zone);
        appendText(text, m_time);
    }

    ZoneBook m_zones;
    bool m_hasByteOrderMark;
    std::string m_time;
};

} // namespace

std::unique_ptr<RecordExporter> makeCsvExporter(const ExportOptions& options)
{
    return std::make_unique<CsvExporter>(options);
}

} // namespace brevlin
