#pragma once

#include "exchange/history_export.h"
#include "platform/freedesktop/clock/system_time_zone.h"

#include <string>
#include <vector>

namespace brevlin::test {

/// Everything as one text; nothing where it failed.
inline std::string exported(const std::vector<SessionRecord>& records, const ExportOptions& options,
                            const SessionDetailsById& details = {})
{
    std::string text;
    const auto result = exportHistory(records, details, options, [&text](std::string_view piece) {
        text += piece;
        return true;
    });
    return result ? text : std::string();
}

inline ExportOptions exportOptions(ExportFormat format, const char* zone = "Europe/Berlin")
{
    return {format, {}, false, Calendar(timeZoneOf(zone), "en"), AppLanguage::english, timeZoneOf};
}

} // namespace brevlin::test
