#include "exchange/calendar_library.h"
#include "exchange/export_parts.h"

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace brevlin {

namespace {

// iCalendar, https://www.rfc-editor.org/rfc/rfc5545. The library folds and escapes.

// The form has no control characters but the tab and, escaped, the line break.
std::string withoutControls(std::string_view text)
{
    std::string result;
    for (std::size_t index = 0; index < text.size(); ++index) {
        const char character = text[index];
        if (character == '\r' && text.substr(index + 1, 1) == "\n") {
            continue;
        }
        const bool isBreak = character == '\r' || character == '\n';
        const bool isControl = static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
        result += isBreak ? '\n' : isControl && character != '\t' ? ' ' : character;
    }
    return result;
}

class CalendarExporter final : public RecordExporter
{
public:
    CalendarExporter(const CalendarLibrary& library, AppLanguage language)
        : m_library(library), m_language(language)
    {
        const Component calendar = make(ICAL_VCALENDAR_COMPONENT);
        m_library.addProperty(calendar.get(), m_library.productIdentifier("-//Quillmark//Brevlin//EN"));
        m_library.addProperty(calendar.get(), m_library.version("2.0"));
        m_opening = text(calendar);
        constexpr std::string_view closing = "END:VCALENDAR";
        const std::size_t end = m_opening.rfind(closing);
        m_closing = m_opening.substr(end);
        m_opening.erase(end);
    }

    void begin(std::string& text) override { text += m_opening; }

    bool takes(const SessionRecord& record) const override
    {
        return record.phaseRawValue == TimerPhase::focus;
    }

    bool add(const SessionRecord& record, const SessionDetails& details, std::string& text) override
    {
        const std::int64_t start = nearestUnixSecond(record.actualStartAt);
        const std::int64_t end = nearestUnixSecond(record.endedAt);
        const std::string summary = withoutControls(
            record.intention.view().empty() ? title(TimerPhase::focus, m_language) : record.intention.view());
        const Component event = make(ICAL_VEVENT_COMPONENT);
        const auto put = [&](icalproperty* property) {
            m_library.addProperty(event.get(), property);
        };
        put(m_library.identifier(record.id.text().c_str()));
        put(m_library.stamp(time(end)));
        put(m_library.start(time(start)));
        // An end has to be later than the start; an event without one ends where it starts.
        if (end > start) {
            put(m_library.end(time(end)));
        }
        put(m_library.summary(summary.c_str()));
        put(m_library.transparency(ICAL_TRANSP_TRANSPARENT));
        // A calendar that knows the event takes the corrected one for the newer one by this alone.
        if (details.asRecorded || details.beforeAbsences) {
            put(m_library.sequence(1));
        }
        text += this->text(event);
        return true;
    }

    bool end(PieceBuffer& buffer) override
    {
        buffer.text() += m_closing;
        return true;
    }

private:
    using Component = std::unique_ptr<icalcomponent, decltype(&::icalcomponent_free)>;

    Component make(icalcomponent_kind kind) const
    {
        return {m_library.newComponent(kind), m_library.freeComponent};
    }
    std::string text(const Component& component) const
    {
        const std::unique_ptr<char, void (*)(void*)> buffer{m_library.text(component.get()),
                                                            m_library.freeText};
        return buffer ? buffer.get() : "";
    }
    icaltimetype time(std::int64_t unixSecond) const
    {
        return m_library.time(static_cast<std::time_t>(unixSecond), 0, m_library.utc());
    }

    const CalendarLibrary& m_library;
    AppLanguage m_language;
    std::string m_opening;
    std::string m_closing;
};

} // namespace

Expected<std::unique_ptr<RecordExporter>, ExportError> makeCalendarExporter(const ExportOptions& options)
{
    const CalendarLibrary* library = CalendarLibrary::open();
    if (library == nullptr) {
        return Unexpected{ExportError{ExportError::Reason::noLibrary, {}}};
    }
    return std::unique_ptr<RecordExporter>{std::make_unique<CalendarExporter>(*library, options.language)};
}

} // namespace brevlin
