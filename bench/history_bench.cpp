// What a long history costs, as ratios to what the JSON library and the file system cost for the same bytes.

#include "platform/freedesktop/files/posix_durable_file.h"
#include "report.h"
#include "storage/session_archive.h"
#include "storage/session_store.h"
#include "support/fake_document_thread.h"
#include "support/fake_task_scheduler.h"

#include <fcntl.h>
#include <malloc.h>
#include <simdjson.h>
#include <stdlib.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

namespace {

using namespace brevlin;
using namespace brevlin::bench;

constexpr int recordCount = 100'000;
constexpr int manyRecords = 1'000'000;
constexpr int repetitions = 15;

FinishedSession session(std::mt19937_64& random, int index)
{
    std::uniform_real_distribution<double> fraction(0.0, 1.0);
    FinishedSession result;
    result.id = Uuid::random();
    result.phase = index % 2 == 0 ? TimerPhase::focus : TimerPhase::shortBreak;
    result.outcome = index % 9 == 0 ? SessionOutcome::skipped : SessionOutcome::completed;
    result.startedAt = Instant{Seconds{6e8 + index * 1800.0 + fraction(random)}};
    result.endedAt = result.startedAt + Seconds{1500.0};
    result.scheduledEndAt = result.endedAt;
    result.plannedDuration = Seconds{1500.0};
    result.effectiveDuration = index % 9 == 0 ? Seconds{1500.0 * fraction(random)} : Seconds{1500.0};
    result.pauseDuration = index % 5 == 0 ? Seconds{60.0 * fraction(random)} : Seconds{0.0};
    result.cycleIndex = index % 4 + 1;
    if (index % 3 == 0) {
        result.intention = "Write chapter " + std::to_string(index % 40);
    }
    result.timeZoneIdentifierAtStart = "Asia/Shanghai";
    return result;
}

void require(bool condition, const char* what)
{
    if (!condition) {
        std::fprintf(stderr, "history_bench: %s\n", what);
        std::exit(1);
    }
}

/// Memory of this process that no file stands behind.
double anonymousBytes()
{
    std::ifstream status("/proc/self/smaps_rollup");
    for (std::string word; status >> word;) {
        if (word == "Anonymous:") {
            double kilobytes = 0;
            status >> kilobytes;
            return kilobytes * 1024;
        }
    }
    require(false, "the memory is not known");
    return 0;
}

std::vector<SessionRecord> history(std::mt19937_64& random, int count)
{
    std::vector<SessionRecord> records;
    for (int index = count; index-- > 0;) {
        records.emplace_back(session(random, index));
    }
    return records;
}

void rawWrite(const std::string& folder, const std::string& bytes)
{
    const std::string temporary = folder + "/raw.tmp";
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    std::size_t written = 0;
    while (written < bytes.size()) {
        const ssize_t count = ::write(file, bytes.data() + written, bytes.size() - written);
        require(count > 0, "the raw write failed");
        written += static_cast<std::size_t>(count);
    }
    require(::fsync(file) == 0 && ::close(file) == 0, "the raw fsync failed");
    require(::rename(temporary.c_str(), (folder + "/raw.json").c_str()) == 0, "the raw rename failed");
    const int directory = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    require(::fsync(directory) == 0 && ::close(directory) == 0, "the raw fsync of the folder failed");
}

} // namespace

namespace {

/// What the history holds while the program lies open, a record having been added since the start.
void measureMemory(const HistoryDisk& disk, const std::string& path, std::mt19937_64& random)
{
    {
        const auto text = encodeSessionArchive(history(random, manyRecords));
        require(text && disk.files.write(path, *text), "the long history cannot be written");
    }
    ::malloc_trim(0);
    const double before = anonymousBytes();
    SessionStore store({path, {}}, disk);
    store.insert(session(random, manyRecords));
    require(store.isSaved() && store.sessions().size() == manyRecords + 1U, "the long history is not kept");
    const double held = anonymousBytes() - before;
    const auto file = static_cast<double>(std::filesystem::file_size(path));
    constexpr double goal = 0.6;
    printRow("memory of 1,000,000 records / their file", number("%.2f x", held / file),
             number("%.1f x", goal), held <= goal * file,
             number("%.0f MB", held / 1e6) + " / " + number("%.0f MB", file / 1e6));
}

} // namespace

// The folder to write in is the argument: the ratio depends on the disk. /tmp is often not one.
int main(int argumentCount, char** arguments)
{
    std::string folder = std::string(argumentCount > 1 ? arguments[1] : ".") + "/brevlin-bench-XXXXXX";
    require(::mkdtemp(folder.data()) != nullptr, "no folder to write in");

    std::mt19937_64 random(20260131);
    PosixDurableFile files;
    test::FakeClock clock;
    test::FakeTaskScheduler scheduler{clock};
    test::FakeDocumentThread thread; // the writing itself is measured, wherever it runs
    const HistoryDisk disk{files, thread, scheduler, clock};
    const std::string path = std::filesystem::absolute(folder).string() + "/sessions-v1.json";
    const auto encoded = encodeSessionArchive(history(random, recordCount));
    require(bool(encoded), "the history cannot be encoded");
    const std::string& document = *encoded;
    require(bool(files.write(path, document)), "the history cannot be written");

    std::vector<double> load;
    std::vector<double> parse;
    // The best that the library can do: its memory is there, and the text is not copied.
    const simdjson::padded_string padded(document);
    simdjson::dom::parser parser;
    require(parser.parse(padded).error() == simdjson::SUCCESS, "the library cannot parse");
    for (int turn = 0; turn < repetitions; ++turn) {
        parse.push_back(seconds(
            [&] { require(parser.parse(padded).error() == simdjson::SUCCESS, "the library cannot parse"); }));
        load.push_back(seconds([&] {
            const SessionStore store({path, {}}, disk);
            require(store.sessions().size() == std::size_t{recordCount}, "the history cannot be loaded");
        }));
    }

    std::vector<double> firstInsert;
    std::vector<double> firstRaw;
    for (int turn = 0; turn < repetitions; ++turn) {
        SessionStore store({path, {}}, disk);
        const FinishedSession next = session(random, recordCount + turn);
        firstRaw.push_back(seconds([&] { rawWrite(folder, document); }));
        firstInsert.push_back(
            seconds([&] { require((store.insert(next), store.isSaved()), "insert failed"); }));
    }

    SessionStore store({path, {}}, disk);
    store.insert(session(random, recordCount + 2 * repetitions));
    std::vector<double> insert;
    std::vector<double> raw;
    for (int turn = 0; turn < repetitions; ++turn) {
        raw.push_back(seconds([&] { rawWrite(folder, document); }));
        const FinishedSession next = session(random, recordCount + 2 * repetitions + 1 + turn);
        insert.push_back(seconds([&] { require((store.insert(next), store.isSaved()), "insert failed"); }));
    }
    printRatio("load 100,000 records / the library's best parse", load, parse, 1.25);
    printRatio("first insert / raw durable write", firstInsert, firstRaw, 1.1);
    printRatio("insert / raw durable write", insert, raw, 1.05);
    measureMemory(disk, path, random);
    std::filesystem::remove_all(folder);
    return 0;
}
