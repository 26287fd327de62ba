#include "command/import_report.h"

#include <algorithm>

namespace brevlin {

namespace {

// More than anybody reads, and short enough for one line over the socket.
constexpr std::size_t mostRows = 100;

constexpr const char* reportMark = "report";
constexpr const char* failureMark = "failure";

} // namespace

ImportReport::ImportReport(const ImportPlan& plan)
    : newCount(plan.records.size())
    , knownCount(plan.knownCount)
    , unreadableCount(plan.unreadable.size())
    , unreadable(plan.unreadable.begin(), plan.unreadable.begin() + static_cast<std::ptrdiff_t>(std::min(
                                                                        plan.unreadable.size(), mostRows)))
{}

std::string summary(const ImportReport& report, bool isDryRun, AppLanguage language)
{
    const std::string added = std::to_string(report.newCount);
    const std::string known = std::to_string(report.knownCount);
    const std::string unreadable = std::to_string(report.unreadableCount);
    if (language == AppLanguage::english) {
        return (isDryRun ? "Would be added: " : "Added: ") + added + ". Known already: " + known +
               ". Unreadable: " + unreadable + ".\n";
    }
    return (isDryRun ? "将添加 " : "已添加 ") + added + " 条，已有 " + known + " 条，无法读取 " + unreadable +
           " 条。\n";
}

std::string unreadableRows(const ImportReport& report, AppLanguage language)
{
    const bool isEnglish = language == AppLanguage::english;
    std::string text;
    for (const UnreadableRow& row : report.unreadable) {
        const std::string line = std::to_string(row.line);
        text += (isEnglish ? "Line " + line + ": " : "第 " + line + " 行：") +
                std::string(title(row.problem, language)) + "\n";
    }
    if (const std::size_t rest = report.unreadableCount - report.unreadable.size(); rest > 0) {
        text += isEnglish ? "And " + std::to_string(rest) + " more.\n"
                          : "还有 " + std::to_string(rest) + " 行。\n";
    }
    return text;
}

QStringList importArguments(const ImportCommand& command)
{
    const std::string_view format = command.format ? rawValue(*command.format) : "";
    return {QString::fromStdString(command.file),
            QString::fromUtf8(format.data(), static_cast<qsizetype>(format.size())),
            QString::number(command.isDryRun ? 1 : 0)};
}

std::optional<ImportCommand> importCommand(const QStringList& arguments)
{
    const std::string file = arguments.value(0).toStdString();
    const std::string format = arguments.value(1).toStdString();
    const auto known = fromRawValue<ImportFormat>(format);
    return file.starts_with('/') && (known || format.empty())
               ? std::optional{ImportCommand{file, known, arguments.value(2) == QLatin1String("1")}}
               : std::nullopt;
}

QByteArray importAnswerLine(const ImportAnswer& answer)
{
    if (!answer) {
        const std::string reason(rawValue(answer.error().reason));
        return QByteArray(failureMark) + ' ' + reason.c_str() + ' ' +
               QByteArray::fromStdString(answer.error().description).toPercentEncoding() + '\n';
    }
    QByteArray line(reportMark);
    for (const std::size_t count : {answer->newCount, answer->knownCount, answer->unreadableCount}) {
        line += ' ' + QByteArray::number(static_cast<qulonglong>(count));
    }
    for (const UnreadableRow& row : answer->unreadable) {
        line += ' ' + QByteArray::number(static_cast<qulonglong>(row.line)) + ':' +
                QByteArray::fromStdString(std::string(rawValue(row.problem)));
    }
    return line + '\n';
}

std::optional<ImportAnswer> importAnswer(const QByteArray& line)
{
    const QList<QByteArray> words = line.chopped(line.endsWith('\n') ? 1 : 0).split(' ');
    if (const auto reason = fromRawValue<ImportError::Reason>(words.value(1).toStdString());
        reason && words.front() == failureMark) {
        return ImportAnswer{
            Unexpected{ImportError{*reason, QByteArray::fromPercentEncoding(words.value(2)).toStdString()}}};
    }
    constexpr qsizetype countedWords = 4;
    if (words.front() != reportMark || words.size() < countedWords) {
        return std::nullopt;
    }
    ImportReport report;
    report.newCount = words[1].toULongLong();
    report.knownCount = words[2].toULongLong();
    report.unreadableCount = words[3].toULongLong();
    for (const QByteArray& word : words.mid(countedWords)) {
        const QList<QByteArray> parts = word.split(':');
        if (const auto problem = fromRawValue<ImportProblem>(parts.value(1).toStdString())) {
            report.unreadable.push_back({parts.front().toULongLong(), *problem});
        }
    }
    return ImportAnswer{report};
}

} // namespace brevlin
