#include "storage/json/json_writer.h"

#include <simdjson.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace brevlin {

namespace {

constexpr std::size_t longestNumber = 32;

bool needsEscape(char character)
{
    return static_cast<unsigned char>(character) < 0x20 || character == '"' || character == '\\';
}

char* putEscaped(char* at, char character)
{
    constexpr std::string_view hexDigits = "0123456789abcdef";
    constexpr std::string_view shortForms = "\"\"\\\\\bb\ff\nn\rr\tt"; // pairs of character and letter
    *at++ = '\\';
    for (std::size_t index = 0; index < shortForms.size(); index += 2) {
        if (shortForms[index] == character) {
            *at++ = shortForms[index + 1];
            return at;
        }
    }
    const auto code = static_cast<unsigned char>(character);
    for (const char part : {'u', '0', '0', hexDigits[code >> 4U], hexDigits[code & 0xFU]}) {
        *at++ = part;
    }
    return at;
}

} // namespace

void JsonWriter::null()
{
    word("null");
}

void JsonWriter::value(bool value)
{
    word(value ? "true" : "false");
}

void JsonWriter::word(std::string_view text)
{
    finishAt(std::copy(text.begin(), text.end(), roomForValue(text.size())));
}

void JsonWriter::value(std::int64_t value)
{
    char* at = roomForValue(longestNumber);
    finishAt(std::to_chars(at, at + longestNumber, value).ptr);
}

void JsonWriter::value(double number)
{
    // From here on an integer literal does not fit 64 bits, and readers refuse it.
    constexpr double beyondIntegers = 9'223'372'036'854'775'808.0;
    if (!std::isfinite(number)) {
        refuse("is not a finite number");
        return;
    }
    if (std::abs(number) >= beyondIntegers) {
        char* at = roomForValue(longestNumber);
        finishAt(std::to_chars(at, at + longestNumber, number, std::chars_format::scientific).ptr);
        return;
    }
    const auto integral = static_cast<std::int64_t>(number);
    if (static_cast<double>(integral) == number) {
        value(integral);
        return;
    }
    char* at = roomForValue(longestNumber);
    finishAt(std::to_chars(at, at + longestNumber, number).ptr);
}

void JsonWriter::value(std::string_view text)
{
    constexpr std::size_t longestEscape = 6;
    bool isPlain = true;
    for (const char character : text) {
        isPlain = isPlain && !needsEscape(character) && static_cast<unsigned char>(character) < 0x80;
    }
    if (!isPlain && !simdjson::validate_utf8(text.data(), text.size())) {
        refuse("is not UTF-8");
        return;
    }
    char* at = roomForValue((isPlain ? text.size() : text.size() * longestEscape) + 2);
    *at++ = '"';
    if (isPlain) {
        at = std::copy(text.begin(), text.end(), at);
    } else {
        for (const char character : text) {
            if (needsEscape(character)) {
                at = putEscaped(at, character);
            } else {
                *at++ = character;
            }
        }
    }
    *at++ = '"';
    finishAt(at);
}

Expected<std::string, DocumentError> JsonWriter::finish() &&
{
    if (m_error) {
        return Unexpected{*std::move(m_error)};
    }
    m_buffer.resize(m_size);
    return std::move(m_buffer);
}

void JsonWriter::open(char bracket)
{
    char* at = roomForValue(1);
    *at++ = bracket;
    finishAt(at);
    m_needsComma = false;
}

void JsonWriter::close(char bracket)
{
    char* at = room(1);
    *at++ = bracket;
    finishAt(at);
    m_needsComma = true;
}

void JsonWriter::refuse(std::string_view problem)
{
    if (!m_error) {
        m_error = DocumentError{"The value of \"" + std::string(m_lastKey) + "\" " + std::string(problem)};
    }
}

} // namespace brevlin
