// Records phases without end in the history file that the argument names, and prints the id of each one as
// soon as it is acknowledged. To be killed.

#include "platform/freedesktop/files/leftovers.h"
#include "platform/freedesktop/files/posix_durable_file.h"
#include "storage/session_store.h"
#include "support/fake_document_thread.h"
#include "support/fake_task_scheduler.h"

#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>

using namespace brevlin;

int main(int argumentCount, char** arguments)
{
    if (argumentCount != 2) {
        std::fputs("history_writer: one argument, the path of the history\n", stderr);
        return 2;
    }
    const std::string path = arguments[1];
    removeLeftovers(std::filesystem::path(path).parent_path().string());
    PosixDurableFile files;
    test::FakeClock clock;
    test::FakeTaskScheduler scheduler{clock};
    test::FakeDocumentThread thread;
    SessionStore store({path, {}}, {files, thread, scheduler, clock});
    for (double second = 0.0; !store.lastError(); second += 1.0) {
        FinishedSession session;
        session.id = Uuid::random();
        session.startedAt = Instant{Seconds{8e8 + second}};
        session.endedAt = session.startedAt + Seconds{1500.0};
        session.scheduledEndAt = session.endedAt;
        store.insert(session);
        if (store.isSaved()) {
            const std::string line = session.id.text() + '\n';
            if (write(STDOUT_FILENO, line.data(), line.size()) != static_cast<ssize_t>(line.size())) {
                return 1;
            }
        }
    }
    std::fprintf(stderr, "history_writer: %s\n", store.lastError()->underlyingDescription.c_str());
    return 1;
}
