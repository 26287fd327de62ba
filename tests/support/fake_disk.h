#pragma once

#include "storage/kept_document.h"
#include "storage/session_store.h"
#include "support/fake_clock.h"
#include "support/fake_document_thread.h"
#include "support/fake_task_scheduler.h"
#include "support/memory_user_defaults.h"

#include <utility>

namespace brevlin::test {

/// What the documents need, for tests of what they hold; a fixture may be one.
class FakeDisk
{
public:
    explicit FakeDisk(FakeClock start = FakeClock{}) : clock(std::move(start)) {}

    FakeClock clock;
    FakeTaskScheduler scheduler{clock};
    FakeDocumentThread thread;
    MemoryUserDefaults defaults;
    MemoryDurableFile files; ///< of the history

    operator DocumentDisk()
    {
        return {defaults, thread, scheduler, clock};
    } // NOLINT(google-explicit-constructor)
    HistoryDisk historyDisk() { return {files, thread, scheduler, clock}; }
};

} // namespace brevlin::test
