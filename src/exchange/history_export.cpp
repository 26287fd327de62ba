#include "exchange/history_export.h"

#include "exchange/export_parts.h"

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

bool isChosen(const SessionRecord& record, const ExportSelection& selection, const Calendar& calendar)
{
    const auto phase = record.phase();
    if (!selection.phases.empty() && (!phase || std::find(selection.phases.begin(), selection.phases.end(),
                                                          *phase) == selection.phases.end())) {
        return false;
    }
    if (!selection.first && !selection.last) {
        return true;
    }
    const LocalDay day = calendar.localDay(record.endedAt);
    return (!selection.first || *selection.first <= day) && (!selection.last || day <= *selection.last);
}

Expected<std::unique_ptr<RecordExporter>, ExportError> makeExporter(const ExportOptions& options)
{
    switch (options.format) {
    case ExportFormat::json:
        return makeJsonExporter(options);
    case ExportFormat::ics:
        return makeCalendarExporter(options);
    case ExportFormat::timewarrior:
        return makeTimewarriorExporter();
    case ExportFormat::csv:
        break;
    }
    return makeCsvExporter(options);
}

} // namespace

Expected<std::size_t, ExportError> exportHistory(std::span<const SessionRecord> records,
                                                 const SessionDetailsById& details,
                                                 const ExportOptions& options, const PieceSink& sink)
{
    auto exporter = makeExporter(options);
    if (!exporter) {
        return Unexpected{exporter.error()};
    }
    const auto refused = [&exporter] {
        const std::string description = (*exporter)->description();
        return Unexpected{ExportError{description.empty() ? ExportError::Reason::stopped
                                                          : ExportError::Reason::notExpressible,
                                      description}};
    };
    const SessionDetails none;
    std::size_t count = 0;
    PieceBuffer buffer(sink);
    (*exporter)->begin(buffer.text());
    for (std::size_t left = records.size(); left > 0; --left) {
        const SessionRecord& record = records[left - 1];
        if (!isChosen(record, options.selection, options.calendar) || !(*exporter)->takes(record)) {
            continue;
        }
        ++count;
        const auto known = details.find(record.id);
        if (!(*exporter)->add(record, known != details.end() ? known->second : none, buffer.text()) ||
            !buffer.handOn()) {
            return refused();
        }
    }
    return (*exporter)->end(buffer) && buffer.finish() ? Expected<std::size_t, ExportError>{count}
                                                       : refused();
}

BilingualText sentence(ExportError::Reason reason)
{
    static constexpr std::array<BilingualText, 3> texts{{
        {"导出已中断。", "The export was stopped."},
        {"无法写出日历：未安装 libical（软件包 libical3）。",
         "The calendar cannot be written: libical (package libical3) is not installed."},
        {"有一条记录无法以这种格式表示。", "A record cannot be expressed in this format."},
    }};
    return texts.at(static_cast<std::size_t>(reason));
}

} // namespace brevlin
