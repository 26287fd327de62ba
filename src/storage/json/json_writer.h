#pragma once

#include "core/expected.h"
#include "core/instant.h"
#include "core/raw_value.h"
#include "core/uuid.h"
#include "storage/document_error.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace brevlin {

/// Writes one JSON document without white space. A number that JSON cannot express and a text that is not
/// UTF-8 make finish() fail, so that no document of ours is ever one that we cannot read.
class JsonWriter final
{
public:
    explicit JsonWriter(std::size_t expectedSize = 512) { m_buffer.resize(expectedSize); }

    void beginObject() { open('{'); }
    void endObject() { close('}'); }
    void beginArray() { open('['); }
    void endArray() { close(']'); }
    /// A key of ours: plain ASCII that needs no escaping.
    void key(std::string_view name)
    {
        char* at = room(name.size() + 4);
        if (m_needsComma) {
            *at++ = ',';
        }
        *at++ = '"';
        std::memcpy(at, name.data(), name.size());
        at += name.size();
        *at++ = '"';
        *at++ = ':';
        finishAt(at);
        m_needsComma = false;
        m_lastKey = name;
    }

    void null();
    void value(bool value);
    void value(std::int64_t value);
    /// The shortest digits that read back as the same number; an integral number has no fraction and no
    /// exponent as long as it is within 64 bits.
    void value(double value);
    void value(std::string_view text);
    void value(Seconds seconds) { value(seconds.count()); }
    /// Seconds since 2001-01-01 00:00:00 UTC.
    void value(Instant instant) { value(instant.time_since_epoch()); }
    void value(const Uuid& uuid) { value(std::string_view{uuid.text()}); }
    template <typename E>
    requires std::is_enum_v<E>
    void value(E enumeration) { value(rawValue(enumeration)); }

    template <typename T>
    void field(std::string_view name, const T& content)
    {
        key(name);
        value(content);
    }
    /// Omits the key where there is nothing.
    template <typename T>
    void field(std::string_view name, const std::optional<T>& content)
    {
        if (content) {
            field(name, *content);
        }
    }

    /// The document, or the first value that JSON cannot express.
    Expected<std::string, DocumentError> finish() &&;

private:
    // Space for this many more bytes; finishAt tells how many were used.
    char* room(std::size_t size)
    {
        if (m_buffer.size() - m_size < size) {
            m_buffer.resize(m_buffer.size() + m_buffer.size() / 2 + size);
        }
        return m_buffer.data() + m_size;
    }
    void finishAt(const char* end) { m_size = static_cast<std::size_t>(end - m_buffer.data()); }
    char* roomForValue(std::size_t size)
    {
        char* at = room(size + 1);
        if (std::exchange(m_needsComma, true)) {
            *at++ = ',';
        }
        return at;
    }
    void word(std::string_view text);
    void open(char bracket);
    void close(char bracket);
    void refuse(std::string_view problem);

    std::string m_buffer; // longer than the document until finish()
    std::size_t m_size = 0;
    bool m_needsComma = false;
    std::string_view m_lastKey;
    std::optional<DocumentError> m_error;
};

} // namespace brevlin
