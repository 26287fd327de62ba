#pragma once

#include "core/expected.h"
#include "core/instant.h"
#include "core/raw_value.h"
#include "core/uuid.h"
#include "storage/document_error.h"

#include <simdjson.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace brevlin {

// Only the sources of storage/ and exchange/ include this header: the JSON library stays out of every
// interface. The DOM front of simdjson 3.0 is the one to use: its On-Demand front misreads many long
// decimals.

using JsonValue = simdjson::dom::element;

/// A parsed document; its values and texts live as long as it does.
class JsonDocument final
{
public:
    /// Strict JSON in UTF-8, nested at most 512 deep, no integer beyond 64 bits; a byte order mark is
    /// skipped. A text with 64 bytes of spare capacity is parsed in place, any other is copied.
    static Expected<JsonDocument, DocumentError> parse(const std::string& text);

    JsonValue root() const { return m_root; }

private:
    std::unique_ptr<simdjson::dom::parser> m_parser;
    JsonValue m_root;
};

// Each gives false for a value of another type. Texts are views into the document.
inline bool read(JsonValue value, bool& result)
{
    return value.get(result) == simdjson::SUCCESS;
}
inline bool read(JsonValue value, std::string_view& result)
{
    return value.get(result) == simdjson::SUCCESS;
}
inline bool read(JsonValue value, double& result)
{
    return value.get(result) == simdjson::SUCCESS;
}
/// Also takes a number with a fraction of zero (4.0, 1e2), as long as doubles tell integers apart.
bool read(JsonValue value, std::int64_t& result);

inline bool read(JsonValue value, std::string& result)
{
    std::string_view text;
    const bool isText = read(value, text);
    result = text;
    return isText;
}
inline bool read(JsonValue value, Seconds& result)
{
    double number = 0.0;
    const bool isNumber = read(value, number);
    result = Seconds{number};
    return isNumber;
}
inline bool read(JsonValue value, Instant& result)
{
    Seconds sinceReference{0.0};
    const bool isNumber = read(value, sinceReference);
    result = Instant{sinceReference};
    return isNumber;
}
inline bool read(JsonValue value, Uuid& result)
{
    std::string_view text;
    const std::optional<Uuid> uuid = read(value, text) ? Uuid::fromText(text) : std::nullopt;
    result = uuid.value_or(Uuid{});
    return uuid.has_value();
}
template <typename E>
requires std::is_enum_v<E>
bool read(JsonValue value, E& result)
{
    std::string_view text;
    const std::optional<E> found = read(value, text) ? fromRawValue<E>(text) : std::nullopt;
    result = found.value_or(E{});
    return found.has_value();
}

/// Reads the fields of one object by key. The first key of a name holds, other keys are ignored. The first
/// failure is kept and makes finish() fail; what is read after it does not count.
class JsonObjectReader final
{
public:
    explicit JsonObjectReader(JsonValue value);

    template <typename T>
    void required(std::string_view key, T& result)
    {
        const std::optional<JsonValue> value = find(key);
        if (!value) {
            refuse(key, "is missing");
        } else if (!read(*value, result)) {
            refuse(key, "has an unexpected value");
        }
    }
    /// A missing key and null leave the result as it is.
    template <typename T>
    void optional(std::string_view key, T& result)
    {
        const std::optional<JsonValue> value = find(key);
        if (value && !value->is_null() && !read(*value, result)) {
            refuse(key, "has an unexpected value");
        }
    }
    template <typename T>
    void optional(std::string_view key, std::optional<T>& result)
    {
        T present{};
        const std::optional<JsonValue> value = find(key);
        if (value && !value->is_null()) {
            optional(key, present);
            result = std::move(present);
        }
    }
    /// The value of a key that may be missing or null.
    std::optional<JsonValue> find(std::string_view key) const;
    /// The array under the key of a document that tells its version. A version later than the latest known
    /// is refused, and so is a document without the array.
    simdjson::dom::array versionedArray(std::string_view key, std::int64_t latestVersion);
    void refuse(std::string_view key, std::string_view problem);
    void refuse(DocumentError error);

    const std::optional<DocumentError>& error() const { return m_error; }
    template <typename T>
    Expected<T, DocumentError> finish(T result) const
    {
        if (m_error) {
            return Unexpected{*m_error};
        }
        return result;
    }

private:
    simdjson::dom::object m_object;
    std::optional<DocumentError> m_error;
};

} // namespace brevlin
