// Whatever stands in a file, a store starts with it, keeps what it can not read, takes a new state and finds
// that again; and whatever timer was stored, the engine goes on with it to states that can be stored.

#include "core/timer_engine.h"
#include "json_mutator.h"
#include "storage/active_timer_persistence.h"
#include "storage/added_preferences.h"
#include "storage/capsule_position.h"
#include "storage/json/json_reader.h"
#include "storage/main_window_store.h"
#include "storage/preferences_store.h"
#include "storage/session_store.h"
#include "storage/silence_note.h"
#include "storage/snapshot_document.h"
#include "support/fake_disk.h"
#include "support/memory_durable_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <optional>
#include <string>
#include <string_view>

using namespace brevlin;

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

// The zone's table is made once.
const test::FakeClock startClock;

bool holds(const std::map<std::string, std::string>& files, const std::string& content)
{
    return std::any_of(files.begin(), files.end(), [&](const auto& file) { return file.second == content; });
}

// Puts the document under the key, lets the store do its work, and gives what stands there afterwards.
template <typename Work>
std::map<std::string, std::string> with(std::string_view key, const std::string& document, Work work)
{
    test::FakeDisk disk(startClock);
    disk.defaults.values[std::string(key)] = document;
    work(disk);
    return disk.defaults.values;
}

void checkTimer(const std::string& document, std::string_view key)
{
    bool wasRead = false;
    const auto left = with(key, document, [&](test::FakeDisk& disk) {
        ActiveTimerPersistence store(disk);
        const auto loaded = store.load();
        wasRead = bool(loaded);
        TimerSnapshot snapshot;
        snapshot.interruptionCount = 7;
        require(store.save(snapshot) && store.isSaved());
        const auto again = ActiveTimerPersistence(disk).load();
        require(again && *again && **again == snapshot);
    });
    require(wasRead || holds(left, document));
}

void checkPreferences(const std::string& document, std::string_view key)
{
    const auto left = with(key, document, [&](test::FakeDisk& disk) {
        PreferencesStore store(disk);
        AppPreferences preferences = store.load();
        preferences.playCompletionSound = !preferences.playCompletionSound;
        require(store.save(preferences) && store.isSaved());
        require(PreferencesStore(disk).load() == preferences);
    });
    require(decodeAppPreferences(document) || holds(left, document));
}

void checkAddedPreferences(const std::string& document)
{
    const auto left = with(AddedPreferencesStore::key, document, [](test::FakeDisk& disk) {
        AddedPreferencesStore store(disk);
        AddedPreferences preferences = store.load();
        preferences.silencesNotifications = !preferences.silencesNotifications;
        require(store.save(preferences) && store.isSaved());
        require(AddedPreferencesStore(disk).load() == preferences);
    });
    require(decodeAddedPreferences(document) || holds(left, document));
}

std::optional<SilenceNote> storedNote(SilenceNoteStore& store)
{
    std::optional<SilenceNote> result;
    store.setObserver({[&](const std::optional<SilenceNote>& note) { result = note; },
                       [] {
                       }});
    store.read();
    return result;
}

void checkSilenceNote(const std::string& document)
{
    const auto left = with(SilenceNoteStore::key, document, [](test::FakeDisk& disk) {
        SilenceNoteStore store(disk);
        const SilenceNote note = storedNote(store).value_or(SilenceNote{"dunst"});
        require(store.write(note) && store.isSaved());
        SilenceNoteStore again(disk);
        require(storedNote(again) == note);
    });
    require(decodeSilenceNote(document) || holds(left, document));
}

void checkPlaces(const std::string& document)
{
    for (const std::string_view key : {CapsulePositionStore::key, CapsulePositionStore::legacyKey}) {
        with(key, document, [](test::FakeDisk& disk) {
            CapsulePositionStore store(disk);
            SavedPosition position = store.load().value_or(SavedPosition{});
            position.version = SavedPosition::currentVersion;
            require(bool(store.save(position)));
            require(CapsulePositionStore(disk).load() == position);
        });
    }
    with(MainWindowStore::geometryKey, document, [](test::FakeDisk& disk) {
        MainWindowStore store(disk);
        if (const auto geometry = store.geometry()) {
            require(geometry->width > 0 && geometry->height > 0);
            require(bool(store.saveGeometry(*geometry)));
            require(MainWindowStore(disk).geometry() == geometry);
        }
    });
    with(MainWindowStore::sectionKey, document, [](test::FakeDisk& disk) {
        MainWindowStore store(disk);
        if (const auto section = store.section()) {
            require(bool(store.saveSection(*section)));
            require(MainWindowStore(disk).section() == section);
        }
    });
}

void checkHistory(const std::string& document)
{
    const std::string path = "/data/sessions-v1.json";
    test::FakeDisk disk(startClock);
    test::MemoryDurableFile files;
    files.files[path] = document;
    SessionStore store({path, {}}, {files, disk.thread, disk.scheduler, disk.clock});
    const bool wasRead = store.isLoaded() && !store.lastError();
    const std::size_t count = store.sessions().size();
    FinishedSession session;
    session.id = Uuid::random();
    store.insert(session);
    require(store.isSaved() && store.sessions().size() == count + 1);
    const auto stored = decodeSessionArchive(files.files[path]);
    require(stored && stored->size() == count + 1);
    require(wasRead || holds(files.files, document));
}

void checkEngine(const std::string& document)
{
    const auto snapshot = decodeTimerSnapshot(document);
    if (!snapshot) {
        return;
    }
    const auto settings = decodeAppPreferences(document);
    const TimerSettings timerSettings = settings ? settings->timerSettings : TimerSettings{};
    using Operation = TimerTransition (TimerEngine::*)(Instant);
    for (const Operation operation :
         {&TimerEngine::pause, &TimerEngine::resume, &TimerEngine::skip, &TimerEngine::reset,
          &TimerEngine::switchAndStart, &TimerEngine::advance}) {
        TimerEngine engine(timerSettings, *snapshot, [] { return "UTC"; });
        const TimerTransition transition = (engine.*operation)(startClock.now());
        require(bool(encode(transition.snapshot)));
        require(!transition.finishedSession || encode(*transition.finishedSession));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string document(reinterpret_cast<const char*>(data), size);
    checkTimer(document, ActiveTimerPersistence::defaultKey);
    if (!JsonDocument::parse(document)) {
        return 0; // all stores treat it alike
    }
    checkTimer(document, ActiveTimerPersistence::legacyDefaultKey);
    checkPreferences(document, PreferencesStore::key);
    checkPreferences(document, PreferencesStore::legacyKey);
    checkAddedPreferences(document);
    checkSilenceNote(document);
    checkPlaces(document);
    checkHistory(document);
    checkEngine(document);
    return 0;
}
