#pragma once

#include "command/import_report.h"
#include "platform/clock.h"
#include "platform/document_thread.h"
#include "platform/durable_file.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace brevlin {

/// Carries out, within the running program, the imports that a command asks for: reads and compares on the
/// thread of the documents, and hands what is new to the program's history.
class ImportDesk final
{
public:
    struct Parts
    {
        const DurableFile& files; ///< this and the two below outlive the desk, and all posted jobs
        DocumentThread& thread;
        const Clock& clock;
        /// The history; nothing as long as it has not been read.
        std::function<std::optional<std::vector<SessionRecord>>()> records;
        /// Takes what is new into the history, in one step that a disk may refuse.
        std::function<void(ImportPlan)> adopt;
        /// Whether the history has the record.
        std::function<bool(const Uuid&)> holds;
    };

    explicit ImportDesk(Parts parts) : m_parts(std::make_shared<Parts>(std::move(parts))) {}

    /// Answers at once or, when all of it is on the disk, later, unless the desk is gone by then.
    void carryOut(const ImportCommand& command, std::function<void(const ImportAnswer&)> answer);

private:
    static void adopt(const std::shared_ptr<Parts>& parts, ImportPlan plan, std::size_t comparedCount,
                      const std::function<void(const ImportAnswer&)>& answer);

    std::shared_ptr<Parts> m_parts;
};

} // namespace brevlin
