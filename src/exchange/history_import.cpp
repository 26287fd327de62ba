#include "exchange/history_import.h"

#include "exchange/csv_columns.h"
#include "exchange/import_builder.h"
#include "exchange/json_fields.h"

#include <algorithm>
#include <string>
#include <utility>

namespace brevlin {

namespace {

std::optional<ImportFormat> formatOf(std::string_view text)
{
    const std::string_view content =
        text.starts_with(byteOrderMark) ? text.substr(byteOrderMark.size()) : text;
    const std::size_t first = content.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos || content[first] != '[') {
        return csvFormat(text);
    }
    // A key that no other program writes, looked for where the first elements are.
    constexpr std::size_t beginning = std::size_t{1} << 16;
    const std::string key = "\"" + std::string(jsonField::effectiveSeconds) + "\"";
    return content.substr(0, beginning).find(key) != std::string_view::npos ? ImportFormat::json
                                                                            : ImportFormat::timewarrior;
}

bool readAs(ImportFormat format, std::string_view text, ImportBuilder& builder)
{
    switch (format) {
    case ImportFormat::json:
        return readJson(text, builder);
    case ImportFormat::toggl:
        return readToggl(text, builder);
    case ImportFormat::timewarrior:
        return readTimewarrior(text, builder);
    case ImportFormat::csv:
        break;
    }
    return readCsv(text, builder);
}

// Whether a text that is said to have this format can have it.
bool fits(ImportFormat wanted, std::optional<ImportFormat> seen)
{
    const auto isJson = [](ImportFormat format) {
        return format == ImportFormat::json || format == ImportFormat::timewarrior;
    };
    return seen && (wanted == *seen || (isJson(wanted) && isJson(*seen)));
}

} // namespace

Expected<ImportPlan, ImportError> planImport(std::string_view text, std::span<const SessionRecord> history,
                                             const ImportOptions& options)
{
    const std::optional<ImportFormat> seen = formatOf(text);
    const std::optional<ImportFormat> format = options.format ? options.format : seen;
    if (!format || !fits(*format, seen)) {
        return Unexpected{ImportError{ImportError::Reason::unknownFormat, {}}};
    }
    ImportBuilder builder(history, options);
    if (!readAs(*format, text, builder)) {
        return Unexpected{ImportError{ImportError::Reason::cancelled, {}}};
    }
    return std::move(builder).finish();
}

std::string_view title(ImportProblem problem, AppLanguage language)
{
    static constexpr std::array<BilingualText, 7> texts{{
        {"格式有误", "not well formed"},
        {"开始或结束不是日期时间", "the start or the end is not a date and time"},
        {"编号无效", "the identifier is not valid"},
        {"不是数字", "not a number"},
        {"尚未结束", "has not ended yet"},
        {"结束早于开始", "ends before it starts"},
        {"结束于未来", "ends in the future"},
    }};
    return texts.at(static_cast<std::size_t>(problem)).in(language);
}

BilingualText sentence(ImportError::Reason reason)
{
    static constexpr std::array<BilingualText, 5> texts{{
        {"无法读取要导入的文件。", "The file to import cannot be read."},
        {"无法识别此文件的格式。", "This file has none of the formats that can be imported."},
        {"导入已取消。", "The import was cancelled."},
        {"无法读取历史记录，没有导入任何内容。", "The history cannot be read; nothing was imported."},
        {"无法写入历史记录，没有导入任何内容。", "The history cannot be written; nothing was imported."},
    }};
    return texts.at(static_cast<std::size_t>(reason));
}

void dropKnown(ImportPlan& plan, std::span<const SessionRecord> history)
{
    std::vector<Uuid> ids;
    ids.reserve(history.size());
    for (const SessionRecord& record : history) {
        ids.push_back(record.id);
    }
    std::sort(ids.begin(), ids.end());
    plan.knownCount += std::erase_if(plan.records, [&ids](const SessionRecord& record) {
        return std::binary_search(ids.begin(), ids.end(), record.id);
    });
}

} // namespace brevlin
