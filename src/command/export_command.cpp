#include "command/commands.h"
#include "command/history_reading.h"
#include "platform/freedesktop/clock/system_clock.h"
#include "platform/freedesktop/clock/system_time_zone.h"
#include "platform/freedesktop/files/posix_durable_file.h"

#include <cerrno>
#include <filesystem>
#include <system_error>

namespace brevlin {

namespace {

ExitStatus exportToOutput(const std::function<Expected<std::size_t, ExportError>(const PieceSink&)>& produce,
                          const CommandContext& context)
{
    int code = 0;
    const auto result = produce([&code](std::string_view piece) {
        const bool isWritten = writeOut(piece);
        code = isWritten ? 0 : errno;
        return isWritten;
    });
    if (result) {
        return ExitStatus::done;
    }
    if (code == EPIPE) {
        return ExitStatus::done; // whoever reads has read enough
    }
    return code != 0 ? fail({"无法写到标准输出。", "Standard output cannot be written."},
                            std::generic_category().message(code), context)
                     : fail(sentence(result.error().reason), result.error().description, context);
}

ExitStatus exportToFile(const std::string& output,
                        const std::function<Expected<std::size_t, ExportError>(const PieceSink&)>& produce,
                        const CommandContext& context)
{
    std::error_code ignored;
    const std::string path = std::filesystem::absolute(output, ignored).string();
    std::optional<ExportError> error;
    PosixDurableFile files;
    const auto written = files.writePieces(path, [&](const PieceSink& sink) {
        const auto result = produce(sink);
        if (!result) {
            error = result.error();
        }
        return bool(result);
    });
    if (written) {
        return ExitStatus::done;
    }
    return error && error->reason != ExportError::Reason::stopped
               ? fail(sentence(error->reason), error->description, context)
               : fail({"无法写入文件。", "The file cannot be written."}, written.error().description,
                      context);
}

} // namespace

ExitStatus runExport(const ExportCommand& command, const CommandContext& context)
{
    const PosixDurableFile files;
    const auto history = readHistory(context.folders.applicationSupport, files);
    if (!history) {
        return fail({"无法读取历史记录。", "The history cannot be read."}, history.error().description,
                    context);
    }
    const SystemClock clock;
    const ExportOptions options{
        command.format,           command.selection,
        command.hasByteOrderMark, Calendar(clock.timeZone(), std::string(localeIdentifier(context.language))),
        context.language,         timeZoneOf};
    const auto produce = [&](const PieceSink& sink) {
        return exportHistory(history->records, history->details, options, sink);
    };
    return command.output ? exportToFile(*command.output, produce, context)
                          : exportToOutput(produce, context);
}

} // namespace brevlin
