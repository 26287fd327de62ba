#include "storage/history_backup_folder.h"

#include "storage/session_archive_scanner.h"
#include "storage/session_details_document.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <functional>
#include <set>
#include <string_view>
#include <utility>

namespace brevlin {

namespace {

constexpr const char* sessionsKind = "sessions";
constexpr const char* detailsKind = "details";
constexpr std::string_view extension = ".json";

std::string dayText(LocalDay day)
{
    const std::chrono::year_month_day date{day};
    std::string text(16, '\0');
    const int length =
        std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()));
    text.resize(static_cast<std::size_t>(length));
    return text;
}

// Nothing for any other name.
std::optional<LocalDay> dayOf(std::string_view name, std::string_view kind)
{
    if (!name.starts_with(kind) || !name.ends_with(extension)) {
        return std::nullopt;
    }
    const auto number = [name](std::size_t at, std::size_t size) {
        int result = 0;
        const std::string_view digits = at < name.size() ? name.substr(at, size) : std::string_view{};
        std::from_chars(digits.data(), digits.data() + digits.size(), result);
        return result;
    };
    const std::size_t at = kind.size() + 1;
    using namespace std::chrono;
    const year_month_day date{year{number(at, 4)}, month{static_cast<unsigned>(number(at + 5, 2))},
                              day{static_cast<unsigned>(number(at + 8, 2))}};
    if (!date.ok()) {
        return std::nullopt;
    }
    const LocalDay result{date};
    return name == std::string(kind) + "-" + dayText(result) + std::string(extension) ? std::optional{result}
                                                                                      : std::nullopt;
}

DocumentError missing(const std::string& path)
{
    return {path, false};
}

} // namespace

HistoryBackupFolder::HistoryBackupFolder(BackupPaths paths, DurableFile& files)
    : m_paths(std::move(paths)), m_files(files)
{}

std::string HistoryBackupFolder::path(const char* kind, LocalDay day) const
{
    return m_paths.folder + "/" + kind + "-" + dayText(day) + std::string(extension);
}

Expected<void, DocumentError> HistoryBackupFolder::make(LocalDay today)
{
    const std::string target = path(sessionsKind, today);
    const auto present = count(today);
    if (!present && !present.error().isAboutContent && m_files.exists(target)) {
        return Unexpected{present.error()}; // it may be whole
    }
    if (!present) {
        if (const auto whole = countSessionArchive(m_files, m_paths.history); !whole || !*whole) {
            return Unexpected{whole ? missing(m_paths.history) : whole.error()};
        }
        if (auto copied = copyDetails(today); !copied) {
            return copied;
        }
        if (auto copied = copy(m_paths.history, target); !copied) {
            return copied;
        }
    }
    const auto all = days();
    const auto detailed = daysOf(detailsKind);
    if (!all || !detailed) {
        return Unexpected{all ? detailed.error() : all.error()};
    }
    const std::vector<LocalDay> kept = keptBackups(*all, today);
    std::set<LocalDay, std::greater<>> outdated(all->begin(), all->end());
    outdated.insert(detailed->begin(), detailed->end()); // without records: what a crash left
    for (const LocalDay day : kept) {
        outdated.erase(day);
    }
    return remove({outdated.begin(), outdated.end()});
}

// As it is on the disk, and whole: nobody else has written meanwhile.
Expected<void, DocumentError> HistoryBackupFolder::copy(const std::string& from, const std::string& to)
{
    const auto before = m_files.stamp(from);
    Expected<void, DocumentError> read;
    const auto written = m_files.writePieces(to, [&](const PieceSink& sink) {
        const auto stamp = m_files.readPieces(from, sink);
        if (!stamp) {
            read = Unexpected{documentError(stamp.error())};
        }
        const auto after = m_files.stamp(from);
        return stamp && before && after && *stamp == *before && *after == *before;
    });
    return written || !read ? read : Unexpected{documentError(written.error())};
}

Expected<void, DocumentError> HistoryBackupFolder::copyDetails(LocalDay today)
{
    const std::string target = path(detailsKind, today);
    const auto text = m_files.read(m_paths.details);
    if (!text) {
        return Unexpected{documentError(text.error())};
    }
    if (!*text || !decodeSessionDetails(**text)) {
        // The records are what counts; of an earlier attempt none may stay, which would be of other records.
        const auto removed = m_files.exists(target) ? m_files.remove(target) : Expected<void, FileError>{};
        return removed ? Expected<void, DocumentError>{} : Unexpected{documentError(removed.error())};
    }
    const auto written = m_files.write(target, **text);
    return written ? Expected<void, DocumentError>{} : Unexpected{documentError(written.error())};
}

Expected<void, DocumentError> HistoryBackupFolder::remove(const std::vector<LocalDay>& days)
{
    for (const LocalDay day : days) {
        for (const char* kind : {sessionsKind, detailsKind}) {
            const std::string file = path(kind, day);
            if (!m_files.exists(file)) {
                continue;
            }
            if (const auto removed = m_files.remove(file); !removed) {
                return Unexpected{documentError(removed.error())};
            }
        }
    }
    return {};
}

Expected<std::vector<LocalDay>, DocumentError> HistoryBackupFolder::daysOf(const char* kind) const
{
    const auto names = m_files.names(m_paths.folder);
    if (!names) {
        return Unexpected{documentError(names.error())};
    }
    std::vector<LocalDay> days;
    for (const std::string& name : *names) {
        if (const auto day = dayOf(name, kind)) {
            days.push_back(*day);
        }
    }
    std::sort(days.begin(), days.end(), std::greater<>());
    return days;
}

Expected<std::vector<LocalDay>, DocumentError> HistoryBackupFolder::days() const
{
    return daysOf(sessionsKind);
}

Expected<std::size_t, DocumentError> HistoryBackupFolder::count(LocalDay day) const
{
    const std::string sessions = path(sessionsKind, day);
    const auto records = countSessionArchive(m_files, sessions);
    if (!records || !*records) {
        return Unexpected{records ? missing(sessions) : records.error()};
    }
    const auto details = m_files.read(path(detailsKind, day));
    if (!details) {
        return Unexpected{documentError(details.error())};
    }
    if (*details) {
        if (const auto decoded = decodeSessionDetails(**details); !decoded) {
            return Unexpected{decoded.error()};
        }
    }
    return **records;
}

Expected<HistoryBackup, DocumentError> HistoryBackupFolder::read(LocalDay day) const
{
    const std::string sessions = path(sessionsKind, day);
    const auto text = m_files.read(sessions);
    const auto details = m_files.read(path(detailsKind, day));
    if (!text || !details) {
        return Unexpected{documentError(text ? details.error() : text.error())};
    }
    if (!*text) {
        return Unexpected{missing(sessions)};
    }
    auto records = readSessionArchive(**text);
    if (!records) {
        return Unexpected{records.error()};
    }
    HistoryBackup backup{*std::move(records), {}};
    if (*details) {
        auto known = decodeSessionDetails(**details);
        if (!known) {
            return Unexpected{known.error()};
        }
        backup.details = *std::move(known);
    }
    return backup;
}

Expected<void, DocumentError> HistoryBackupFolder::clear()
{
    for (const char* kind : {sessionsKind, detailsKind}) {
        const auto days = daysOf(kind);
        if (!days) {
            return Unexpected{days.error()};
        }
        if (auto removed = remove(*days); !removed) {
            return removed;
        }
    }
    return {};
}

std::vector<LocalDay> keptBackups(const std::vector<LocalDay>& days, LocalDay today)
{
    std::vector<LocalDay> kept;
    std::set<std::chrono::year_month> months;
    std::size_t count = 0;
    for (const LocalDay day : days) {
        const std::chrono::year_month_day date{day};
        const bool isToCome = day > today;
        const bool isLatest = !isToCome && count < HistoryBackupFolder::keptDays;
        const bool isLastOfMonth = !isToCome && months.size() < HistoryBackupFolder::keptMonths &&
                                   months.insert(date.year() / date.month()).second;
        count += isToCome ? 0 : 1;
        if (isToCome || isLatest || isLastOfMonth) {
            kept.push_back(day);
        }
    }
    return kept;
}

} // namespace brevlin
