#pragma once

#include "core/expected.h"
#include "core/session_details.h"
#include "platform/clock.h"
#include "platform/durable_file.h"
#include "storage/document_error.h"

#include <string>

namespace brevlin {

/// The path of the details below the user's folder for application data ($XDG_DATA_HOME).
std::string defaultSessionDetailsPath(const std::string& dataFolder);

/// The details on the disk, for the thread that writes them: small, and written as a whole.
class SessionDetailsFile final
{
public:
    SessionDetailsFile(std::string path, DurableFile& files, const Clock& clock);

    /// What is kept. After a failure changes wait until the file could be read, unless it was read and does
    /// not decode: it is then set aside by the first change.
    Expected<SessionDetailsById, DocumentError> load();
    /// Puts these in place of what is kept of the same phases; an empty one removes it. What fails waits for
    /// the next change, or for flush().
    Expected<void, DocumentError> apply(const SessionDetailsById& changes);
    /// Leaves no file.
    Expected<void, DocumentError> clear();
    Expected<void, DocumentError> flush();

private:
    std::string m_path;
    DurableFile& m_files;
    const Clock& m_clock;
    SessionDetailsById m_details;
    SessionDetailsById m_waiting; // for the file to be read
    bool m_isLoaded = false;
    bool m_isDamaged = false;
    bool m_isSaved = true;
};

} // namespace brevlin
