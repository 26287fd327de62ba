#pragma once

#include "exchange/history_import.h"
#include "platform/durable_file.h"

#include <string>

namespace brevlin {

/// planImport() of a file; the path is absolute. Waits for the disk.
Expected<ImportPlan, ImportError> planImportFile(const DurableFile& files, const std::string& path,
                                                 std::span<const SessionRecord> history,
                                                 const ImportOptions& options);

} // namespace brevlin
