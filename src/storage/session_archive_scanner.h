#pragma once

#include "core/expected.h"
#include "core/session_record.h"
#include "platform/durable_file.h"
#include "storage/document_error.h"

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// Room that a history is read with for the records to come: growing moves all of them, on the main thread.
inline constexpr std::size_t spareSessionRecords = 512;

/// Gives equal texts as one. Forgets what it has not met for long, so it stays small.
class TextPool final
{
public:
    SharedText shared(std::string_view text)
    {
        SharedText& kept = m_texts[std::hash<std::string_view>{}(text) % m_texts.size()];
        if (kept.view() != text) {
            kept = SharedText(text);
        }
        return kept;
    }

private:
    std::array<SharedText, 1024> m_texts;
};

/// Reads a history file in exactly the form in which we write it, integers of more than 18 digits excepted,
/// as its pieces come. The JSON library, which reads any form, needs the whole text and builds a tree of it:
/// both are larger than the records, and take longer than all the rest of a start with a long history.
class SessionArchiveScanner final
{
public:
    enum class Keep { records, count };

    /// With room for a file of this size.
    explicit SessionArchiveScanner(std::size_t fileSize, Keep keep = Keep::records);
    ~SessionArchiveScanner();
    SessionArchiveScanner(const SessionArchiveScanner&) = delete;
    SessionArchiveScanner& operator=(const SessionArchiveScanner&) = delete;

    /// False as soon as the text has another form.
    bool take(std::string_view piece);
    /// The records, latest end first, after the last piece; nothing for a text of another form, valid or not.
    std::optional<std::vector<SessionRecord>> finish();
    /// How many there were, likewise, where only that is kept.
    std::optional<std::size_t> finishCount();

private:
    class Values;
    enum class Next { opening, record, separator };

    bool scanOn();
    void forgetRecords();

    std::unique_ptr<Values> m_values;
    std::string m_text; // what was not understood yet
    std::vector<SessionRecord> m_records;
    Next m_next = Next::opening;
    Keep m_keep;
    std::size_t m_forgotten = 0; // records
    bool m_isSorted = true;      // those and the next one
};

/// The records of a history file of any form that decodes; see decodeSessionArchive().
Expected<std::vector<SessionRecord>, DocumentError> readSessionArchive(const std::string& document);
/// How many records the history file at the path has; nothing where there is none. Holds no more than a piece
/// of a file in our form.
Expected<std::optional<std::size_t>, DocumentError> countSessionArchive(const DurableFile& files,
                                                                        const std::string& path);

} // namespace brevlin
