#include "storage/json/json_reader.h"

#include <cmath>
#include <utility>

namespace brevlin {

Expected<JsonDocument, DocumentError> JsonDocument::parse(const std::string& text)
{
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    constexpr std::size_t deepest = 512;
    std::string_view content = text;
    if (content.starts_with(byteOrderMark)) {
        content.remove_prefix(byteOrderMark.size());
    }
    if (content.starts_with(byteOrderMark)) {
        // Newer parsers would skip one themselves.
        return Unexpected{DocumentError{"The document has two byte order marks"}};
    }
    JsonDocument document;
    document.m_parser = std::make_unique<simdjson::dom::parser>();
    simdjson::error_code error = document.m_parser->allocate(content.size(), deepest);
    if (error == simdjson::SUCCESS) {
        const bool copies = text.capacity() - text.size() < simdjson::SIMDJSON_PADDING;
        error = document.m_parser->parse(content.data(), content.size(), copies).get(document.m_root);
    }
    if (error != simdjson::SUCCESS) {
        return Unexpected{DocumentError{simdjson::error_message(error), error != simdjson::MEMALLOC}};
    }
    return document;
}

bool read(JsonValue value, std::int64_t& result)
{
    constexpr double beyondDistinctIntegers = 9'007'199'254'740'992.0; // 2^53
    if (value.get(result) == simdjson::SUCCESS) {
        return true;
    }
    double number = 0.0;
    if (!value.is_double() || value.get(number) != simdjson::SUCCESS || std::trunc(number) != number ||
        std::abs(number) >= beyondDistinctIntegers) {
        return false;
    }
    result = static_cast<std::int64_t>(number);
    return true;
}

JsonObjectReader::JsonObjectReader(JsonValue value)
{
    if (value.get(m_object) != simdjson::SUCCESS) {
        refuse(DocumentError{"The document is not a JSON object"});
    }
}

std::optional<JsonValue> JsonObjectReader::find(std::string_view key) const
{
    JsonValue value;
    if (m_error || m_object.at_key(key).get(value) != simdjson::SUCCESS) {
        return std::nullopt;
    }
    return value;
}

void JsonObjectReader::refuse(std::string_view key, std::string_view problem)
{
    refuse(DocumentError{"The key \"" + std::string(key) + "\" " + std::string(problem)});
}

void JsonObjectReader::refuse(DocumentError error)
{
    if (!m_error) {
        m_error = std::move(error);
    }
}

simdjson::dom::array JsonObjectReader::versionedArray(std::string_view key, std::int64_t latestVersion)
{
    std::int64_t version = 0;
    required("version", version);
    if (version > latestVersion) {
        refuse(DocumentError{"The file has the newer format version " + std::to_string(version)});
    }
    simdjson::dom::array array;
    if (const auto value = find(key); !value) {
        refuse(key, "is missing");
    } else if (value->get(array) != simdjson::SUCCESS) {
        refuse(key, "has an unexpected value");
    }
    return array;
}

} // namespace brevlin
