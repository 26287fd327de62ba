#include "exchange/import_file.h"

#include <cerrno>
#include <system_error>

namespace brevlin {

Expected<ImportPlan, ImportError> planImportFile(const DurableFile& files, const std::string& path,
                                                 std::span<const SessionRecord> history,
                                                 const ImportOptions& options)
{
    const auto text = files.read(path);
    if (!text || !*text) {
        return Unexpected{ImportError{ImportError::Reason::unreadable,
                                      text ? std::generic_category().message(ENOENT) + ": " + path
                                           : text.error().description}};
    }
    return planImport(**text, history, options);
}

} // namespace brevlin
