#pragma once

#include "core/expected.h"
#include "core/finished_session.h"
#include "core/timer_snapshot.h"
#include "storage/document_error.h"

#include <string>

namespace brevlin {

// The JSON forms of the timer's values. Keys stand in the order of the fields; absent optionals are omitted.
// The form of a finished session is agreed for whoever hands one on; no document of the program holds one.

Expected<std::string, DocumentError> encode(const TimerSnapshot& snapshot);
Expected<std::string, DocumentError> encode(const FinishedSession& session);

/// Takes the values as they stand, held within what the engine can reckon with (stored_limits.h).
Expected<TimerSnapshot, DocumentError> decodeTimerSnapshot(const std::string& document);
Expected<FinishedSession, DocumentError> decodeFinishedSession(const std::string& document);

} // namespace brevlin
