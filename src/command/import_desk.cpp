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
        return [plan = std::move(plan), isDryRun = command.isDryRun, comparedCount = history.size(), desk,
                answer]() mutable {
            const auto parts = desk.lock();
            if (!parts) {
                return;
            }
            if (!plan) {
                answer(Unexpected{plan.error()});
            } else if (isDryRun) {
                answer(ImportReport(*plan));
            } else {
                adopt(parts, *std::move(plan), comparedCount, answer);
            }
        };
    });
}

void ImportDesk::adopt(const std::shared_ptr<Parts>& parts, ImportPlan plan, std::size_t comparedCount,
                       const std::function<void(const ImportAnswer&)>& answer)
{
    // Another import may have come in between, and brought the same.
    if (const auto records = parts->records(); records && records->size() != comparedCount) {
        dropKnown(plan, *records);
    }
    const ImportReport report(plan);
    if (plan.records.empty()) {
        answer(report);
        return;
    }
    const Uuid first = plan.records.front().id;
    parts->adopt(std::move(plan));
    // Behind the writing, when it is known whether the disk took it.
    parts->thread.post([first, report, answer, desk = std::weak_ptr<Parts>(parts)] {
        return [first, report, answer, desk] {
            if (const auto living = desk.lock()) {
                answer(living->holds(first)
                           ? ImportAnswer{report}
                           : ImportAnswer{Unexpected{ImportError{ImportError::Reason::notKept, {}}}});
            }
        };
    });
}

} // namespace brevlin
