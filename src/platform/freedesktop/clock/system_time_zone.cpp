#include "platform/freedesktop/clock/system_time_zone.h"

#include <QDateTime>
#include <QFile>
#include <QTimeZone>

#include <ctime>
#include <memory>
#include <utility>
#include <vector>

namespace brevlin {

namespace {

using std::chrono::seconds;

constexpr const char* localtimeFile = "/etc/localtime";
// The years in which people use the program: 1970 to 2100, in Unix time.
constexpr qint64 tableBegin = 0;
constexpr qint64 tableEnd = 4'133'980'800;

QDateTime instant(qint64 unixTime)
{
    return QDateTime::fromSecsSinceEpoch(unixTime, QTimeZone::utc());
}

TimeZone rulesOf(const QTimeZone& zone, const std::string& identifier)
{
    std::vector<TimeZoneRules::Change> changes{
        {seconds{tableBegin}, seconds{zone.offsetFromUtc(instant(tableBegin))}}};
    for (const auto& transition : zone.transitions(instant(tableBegin), instant(tableEnd))) {
        const seconds offset{transition.offsetFromUtc};
        // A change of the rules that leaves the clock alone is none for us.
        if (offset != changes.back().offset) {
            changes.push_back({seconds{transition.atUtc.toSecsSinceEpoch()}, offset});
        }
    }
    return std::make_shared<const TimeZoneRules>(identifier, std::move(changes));
}

// The last line of a file of zone data.
std::string ruleAtTheEnd(const std::string& path)
{
    constexpr qint64 largest = 1 << 20;
    QFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    const QByteArray bytes = file.read(largest);
    if (!bytes.startsWith("TZif") || !bytes.endsWith('\n')) {
        return {};
    }
    const qsizetype start = bytes.lastIndexOf('\n', -2) + 1;
    return bytes.mid(start, bytes.size() - start - 1).toStdString();
}

TimeZone presentOffset()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    const seconds offset{local.tm_gmtoff};
    const QByteArray name = QTimeZone(static_cast<int>(offset.count())).id();
    return std::make_shared<const TimeZoneRules>(
        name.toStdString(), std::vector<TimeZoneRules::Change>{{seconds{tableBegin}, offset}});
}

} // namespace

TimeZone timeZoneOf(const std::string& identifier)
{
    const QTimeZone zone(QByteArray::fromStdString(identifier));
    return zone.isValid() ? rulesOf(zone, identifier) : nullptr;
}

std::string systemTimeZoneSource()
{
    constexpr const char* folder = "/zoneinfo/";
    std::string source = QTimeZone::systemTimeZoneId().toStdString();
    if (source.starts_with(':')) {
        source.erase(0, 1);
    }
    // Some name the file of a zone that has a name.
    if (const auto found = source.find(folder); source.starts_with('/') && found != std::string::npos) {
        return source.substr(found + std::char_traits<char>::length(folder));
    }
    return source.empty() ? localtimeFile : source;
}

TimeZone systemTimeZone(const std::string& source)
{
    if (TimeZone known = timeZoneOf(source)) {
        return known;
    }
    const std::string rule = ruleAtTheEnd(source.starts_with('/') ? source : localtimeFile);
    if (TimeZone ruled = rule.empty() ? nullptr : timeZoneOf(rule)) {
        return ruled;
    }
    return presentOffset();
}

} // namespace brevlin
