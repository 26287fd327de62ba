#pragma once

#include "storage/session_record_fields.h"

#include <cstddef>
#include <string>
#include <vector>

namespace brevlin::test {

/// The names of the fields in which two histories differ, or "".
inline std::string differences(const std::vector<SessionRecord>& left,
                               const std::vector<SessionRecord>& right)
{
    std::string result = left.size() == right.size() ? "" : "number of records ";
    for (std::size_t i = 0; i < left.size() && i < right.size(); ++i) {
        forEachField(sessionRecordFields, [&](const auto& field) {
            if (field.of(left[i]) != field.of(right[i])) {
                result += std::string(field.name) + " of " + std::to_string(i) + " ";
            }
        });
    }
    return result;
}

} // namespace brevlin::test
