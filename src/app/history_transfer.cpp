#include "app/history_transfer.h"

#include "app/history_editor.h"
#include "exchange/import_file.h"
#include "storage/session_details_store.h"
#include "storage/session_store.h"

#include <optional>
#include <utility>

namespace brevlin {

namespace {

constexpr BilingualText unreadText{"历史记录还没有读取完。", "The history has not been read yet."};
constexpr BilingualText unwrittenText{"无法写入文件。", "The file cannot be written."};

} // namespace

HistoryTransfer::HistoryTransfer(TransferParts parts, const Clock& clock, SessionStore& records,
                                 const SessionDetailsStore& details, HistoryEditor& editor)
    : m_parts(std::move(parts))
    , m_clock(clock)
    , m_records(records)
    , m_details(details)
    , m_editor(editor)
    , m_isEnding(std::make_shared<std::atomic<bool>>(false))
{}

HistoryTransfer::~HistoryTransfer()
{
    *m_isEnding = true;
}

void HistoryTransfer::exportTo(const std::string& path, const ExportChoice& choice, const std::string& locale,
                               AppLanguage language,
                               std::function<void(const Expected<std::size_t, TransferError>&)> done)
{
    if (m_records.isAwaited()) {
        done(Unexpected{TransferError{unreadText, {}}});
        return;
    }
    m_parts.thread().post([path, choice, locale, language, zone = m_clock.timeZone(),
                           records = m_records.sessions(), details = m_details.all(), zones = m_parts.zones,
                           &files = m_parts.files, isEnding = m_isEnding,
                           done = std::move(done)]() -> DocumentThread::Completion {
        const ExportOptions options{choice.format,          choice.selection, choice.hasByteOrderMark,
                                    Calendar(zone, locale), language,         zones};
        Expected<std::size_t, ExportError> exported{std::size_t{0}};
        const auto written = files.writePieces(path, [&](const PieceSink& sink) {
            exported = exportHistory(records, details, options,
                                     [&](std::string_view piece) { return !*isEnding && sink(piece); });
            return bool(exported);
        });
        Expected<std::size_t, TransferError> result{exported ? *exported : 0};
        if (!exported && exported.error().reason != ExportError::Reason::stopped) {
            result =
                Unexpected{TransferError{sentence(exported.error().reason), exported.error().description}};
        } else if (!written) {
            result = Unexpected{TransferError{unwrittenText, written.error().description}};
        }
        return [result, done, isEnding] {
            if (!*isEnding) {
                done(result);
            }
        };
    });
}

std::shared_ptr<HistoryTransfer::Reading> HistoryTransfer::planImport(const std::string& path,
                                                                      std::function<void(Plan)> done)
{
    auto reading = std::make_shared<Reading>();
    if (m_records.isAwaited()) {
        done(Unexpected{ImportError{ImportError::Reason::historyUnknown, {}}});
        return reading;
    }
    ImportOptions options{{}, m_clock.now(), m_clock.timeZone(), {}};
    options.progress = [reading, isEnding = m_isEnding](double fraction) {
        reading->fraction = fraction;
        return !reading->isCancelled && !*isEnding;
    };
    m_parts.thread().post([path, options = std::move(options), history = m_records.sessions(),
                           &files = m_parts.files, isEnding = m_isEnding, reading,
                           done = std::move(done)]() -> DocumentThread::Completion {
        auto plan =
            std::make_shared<Plan>(reading->isCancelled || *isEnding
                                       ? Plan{Unexpected{ImportError{ImportError::Reason::cancelled, {}}}}
                                       : planImportFile(files, path, history, options));
        return [plan, done, isEnding] {
            if (!*isEnding) {
                done(std::move(*plan));
            }
        };
    });
    return reading;
}

void HistoryTransfer::adopt(ImportPlan plan)
{
    dropKnown(plan, m_records.sessions());
    m_editor.import(std::move(plan.records), std::move(plan.details));
}

} // namespace brevlin
