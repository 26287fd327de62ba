#pragma once

#include "core/calendar.h"
#include "exchange/history_export.h"
#include "exchange/history_import.h"
#include "platform/clock.h"
#include "platform/document_thread.h"
#include "platform/durable_file.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace brevlin {

class HistoryEditor;
class SessionDetailsStore;
class SessionStore;

/// What files outside of ours are read and written with. All of it outlives the transfer.
struct TransferParts
{
    DurableFile& files;
    /// A thread for them alone: a stick or a share that hangs is not to hold up the documents. Made when it
    /// is first asked for.
    std::function<DocumentThread&()> thread;
    ZoneLookup zones;
};

/// What the user asks for; the rest of the options is the model's.
struct ExportChoice
{
    ExportFormat format = ExportFormat::csv;
    ExportSelection selection;
    bool hasByteOrderMark = false;
};

/// Why no file was written.
struct TransferError
{
    BilingualText sentence;
    std::string description; ///< in the system's words; may be empty
};

/// Takes the history out to files of other programs and theirs in, beside the main thread. A file is written
/// as a whole or not at all.
class HistoryTransfer final
{
public:
    /// An import that is being read, for whoever waits for it.
    struct Reading
    {
        std::atomic<double> fraction{0.0};
        std::atomic<bool> isCancelled{false};
    };
    using Plan = Expected<ImportPlan, ImportError>;

    HistoryTransfer(TransferParts parts, const Clock& clock, SessionStore& records,
                    const SessionDetailsStore& details, HistoryEditor& editor);
    ~HistoryTransfer();
    HistoryTransfer(const HistoryTransfer&) = delete;
    HistoryTransfer& operator=(const HistoryTransfer&) = delete;

    /// Writes the records as they are now; later gives how many. The path is absolute, the locale one of ICU.
    void exportTo(const std::string& path, const ExportChoice& choice, const std::string& locale,
                  AppLanguage language,
                  std::function<void(const Expected<std::size_t, TransferError>&)> done);
    /// Reads a file and compares it with the history; later gives what it would bring.
    std::shared_ptr<Reading> planImport(const std::string& path, std::function<void(Plan)> done);
    /// Takes what is new by now into the history, in one step.
    void adopt(ImportPlan plan);

private:
    TransferParts m_parts;
    const Clock& m_clock;
    SessionStore& m_records;
    const SessionDetailsStore& m_details;
    HistoryEditor& m_editor;
    std::shared_ptr<std::atomic<bool>> m_isEnding; // seen by jobs and completions
};

} // namespace brevlin
