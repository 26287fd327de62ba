#pragma once

#include "core/expected.h"
#include "core/session_details.h"
#include "storage/document_error.h"

#include <cstdint>
#include <string>

namespace brevlin {

inline constexpr std::int64_t sessionDetailsVersion = 1;

// {"details":[…],"version":1}, in one line, every object with its keys sorted; one entry a phase, under "id".

/// The whole text, or the first value that JSON cannot express.
Expected<std::string, DocumentError> encodeSessionDetails(const SessionDetailsById& details);
/// All or nothing, as the history is: what was left out would be lost with the next write. Keys that are not
/// known are ignored, and the first entry of an identifier holds.
Expected<SessionDetailsById, DocumentError> decodeSessionDetails(const std::string& document);

} // namespace brevlin
