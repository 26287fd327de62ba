#include "command/commands.h"
#include "command/history_reading.h"
#include "command/import_report.h"
#include "exchange/import_file.h"
#include "platform/freedesktop/clock/system_clock.h"
#include "platform/freedesktop/files/posix_durable_file.h"
#include "platform/freedesktop/instance/folder_lock.h"
#include "platform/freedesktop/instance/instance_socket.h"
#include "storage/history_file.h"
#include "storage/session_archive.h"
#include "storage/session_details_file.h"

#include <QThread>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <iterator>
#include <system_error>
#include <utility>

namespace brevlin {

namespace {

// A large file on a slow disk; the program answers at once that it ends.
constexpr std::chrono::minutes patience{2};

ExitStatus report(const ImportAnswer& answer, const ImportCommand& command, const CommandContext& context)
{
    if (!answer) {
        return fail(sentence(answer.error().reason), answer.error().description, context);
    }
    const std::string rows = unreadableRows(*answer, context.language);
    std::fputs(rows.c_str(), stderr);
    return writeOut(summary(*answer, command.isDryRun, context.language)) || errno == EPIPE
               ? ExitStatus::done
               : fail({"无法写到标准输出。", "Standard output cannot be written."},
                      std::generic_category().message(errno), context);
}

/// Writes the history itself, where no Brevlin runs that would.
ImportAnswer importHere(const ImportCommand& command, const CommandContext& context)
{
    using Reason = ImportError::Reason;
    PosixDurableFile files;
    const std::string& folder = context.folders.applicationSupport;
    auto history = readHistory(folder, files);
    if (!history) {
        return Unexpected{ImportError{Reason::historyUnknown, history.error().description}};
    }
    const SystemClock clock;
    auto plan = planImportFile(files, command.file, history->records,
                               {command.format, clock.now(), clock.timeZone(), {}});
    if (!plan) {
        return Unexpected{plan.error()};
    }
    const ImportReport counts(*plan);
    if (command.isDryRun || plan->records.empty()) {
        return counts;
    }
    std::vector<SessionRecord>& records = history->records;
    records.insert(records.end(), std::make_move_iterator(plan->records.begin()),
                   std::make_move_iterator(plan->records.end()));
    std::stable_sort(records.begin(), records.end(), endedLater);
    const auto document = encodeSessionArchive(records);
    if (!document) {
        return Unexpected{ImportError{Reason::notKept, document.error().description}};
    }
    // Details first: without their records they do no harm, and records would have lost them.
    if (!plan->details.empty()) {
        SessionDetailsFile details(defaultSessionDetailsPath(folder), files, clock);
        if (const auto kept = details.apply(plan->details); !kept) {
            return Unexpected{ImportError{Reason::notKept, kept.error().description}};
        }
    }
    const auto written = files.replace(defaultHistoryLocation(folder).path, *document, history->stamp);
    return written ? ImportAnswer{counts}
                   : Unexpected{ImportError{Reason::notKept, written.error().description}};
}

/// What the running program answered; nothing where none does, or one that is about to end.
std::optional<ExitStatus> importThere(const ImportCommand& command, const QByteArray& answer,
                                      const CommandContext& context)
{
    if (answer.isEmpty() || answer.startsWith(socketAnswer::ending)) {
        return std::nullopt;
    }
    const auto result = importAnswer(answer);
    if (!result) {
        return fail({"正在运行的 Brevlin 无法导入，请先退出它。",
                     "The running Brevlin cannot import; quit it first."},
                    {}, context);
    }
    return report(*result, command, context);
}

} // namespace

ExitStatus runImport(const ImportCommand& given, const CommandContext& context)
{
    ImportCommand command = given;
    std::error_code ignored;
    command.file = std::filesystem::absolute(given.file, ignored).string();
    FolderLock lock({context.folders.data, context.folders.preferences});
    for (int attempt = 0; attempt < instanceAttempts;) {
        // The socket first: the lock may be gone where folders were made anew below the running program.
        const QByteArray answer =
            context.folders.runtime
                ? askInstance(programSocketPath(*context.folders.runtime, lock.folders()),
                              {{}, QLatin1String(importCommandName), importArguments(command)}, patience)
                : QByteArray();
        if (const auto status = importThere(command, answer, context)) {
            return *status;
        }
        if (command.isDryRun && answer.isEmpty()) {
            return report(importHere(command, context), command, context); // which writes nothing
        }
        const FolderLock::Result result = lock.take();
        if (result == FolderLock::Result::failed) {
            return fail({"无法确认是否有另一个 Brevlin 在使用同一文件夹。",
                         "It is not certain that no other Brevlin works on the same folder."},
                        lock.failure(), context);
        }
        if (result == FolderLock::Result::taken) {
            return report(importHere(command, context), command, context);
        }
        attempt += answer.startsWith(socketAnswer::ending) ? 0 : 1;
        QThread::msleep(instanceAttemptInterval);
    }
    return fail({"Brevlin 已在运行，但没有响应。", "Brevlin is running already, but it does not answer."}, {},
                context);
}

} // namespace brevlin
