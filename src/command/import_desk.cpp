#include "command/import_desk.h"

#include "exchange/import_file.h"

#include <utility>

namespace brevlin {

void ImportDesk::carryOut(const ImportCommand& command, std::function<void(const ImportAnswer&)> answer)
{
    auto history = m_parts->records();
    if (!history) {
        answer(Unexpected{ImportError{ImportError::Reason::historyUnknown, {}}});
        return;
    }
    const ImportOptions options{command.format, m_parts->clock.now(), m_parts->clock.timeZone(), {}};
    m_parts->thread.post([command, options, history = *std::move(history), &files = m_parts->files,
                          desk = std::weak_ptr<Parts>(m_parts),
                          answer = std::move(answer)]() -> DocumentThread::Completion {
        auto plan = planImportFile(files, command.file, history, options);
        return [plan = std::move(plan), isDryRun = command.isDryRun, desk, answer]() mutable {
            const auto parts = desk.lock();
            if (!parts) {
                return;
            }
            if (!plan) {
                answer(Unexpected{plan.error()});
                return;
            }
            const ImportReport report(*plan);
            if (!isDryRun && !plan->records.empty()) {
                parts->adopt(*std::move(plan));
            }
            answer(report);
        };
    });
}

} // namespace brevlin
