// Whatever is decoded must be encodable, and must then read back as the same value: a document that could be
// read but never saved again would stop the program from recording anything.

#include "json_mutator.h"
#include "storage/app_preferences.h"
#include "storage/capsule_position.h"
#include "storage/session_archive.h"
#include "storage/session_archive_scanner.h"
#include "storage/snapshot_document.h"
#include "support/record_differences.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

using namespace brevlin;

namespace {

void require(bool condition)
{
    if (!condition) {
        std::abort();
    }
}

template <typename T>
void roundTrip(const Expected<T, DocumentError>& decoded,
               Expected<T, DocumentError> (*decode)(const std::string&))
{
    if (decoded) {
        const auto text = encode(*decoded);
        require(bool(text));
        const auto again = decode(*text);
        require(again && *again == *decoded);
    }
}

/// The scanner takes fewer texts than the library, and gives the same for what it takes.
void requireSameByScanner(std::string_view text, const std::optional<std::vector<SessionRecord>>& expected)
{
    SessionArchiveScanner scanner(text.size());
    if (scanner.take(text.substr(0, text.size() / 2))) {
        scanner.take(text.substr(text.size() / 2));
    }
    if (const auto scanned = scanner.finish()) {
        require(expected && test::differences(*scanned, *expected).empty());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string document(reinterpret_cast<const char*>(data), size);
    roundTrip(decodeTimerSnapshot(document), decodeTimerSnapshot);
    roundTrip(decodeFinishedSession(document), decodeFinishedSession);
    roundTrip(decodeAppPreferences(document), decodeAppPreferences);
    roundTrip(decodeSavedPosition(document), decodeSavedPosition);
    if (const auto sessions = decodeSessionArchive(document)) {
        const auto text = encodeSessionArchive(*sessions);
        require(bool(text));
        const auto again = decodeSessionArchive(*text);
        require(again && *encodeSessionArchive(*again) == *text);
        requireSameByScanner(*text, *again);
        requireSameByScanner(document, *sessions);
    } else {
        requireSameByScanner(document, std::nullopt);
    }
    return 0;
}
