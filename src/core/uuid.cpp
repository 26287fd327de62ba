#include "core/uuid.h"

#include <uuid/uuid.h>

namespace brevlin {

namespace {

constexpr std::size_t textLength = 36;

constexpr int hexDigit(char character)
{
    if (character >= '0' && character <= '9') {
        return character - '0';
    }
    if (character >= 'a' && character <= 'f') {
        return character - 'a' + 10;
    }
    if (character >= 'A' && character <= 'F') {
        return character - 'A' + 10;
    }
    return -1;
}

constexpr bool isHyphenPosition(std::size_t position)
{
    return position == 8 || position == 13 || position == 18 || position == 23;
}

} // namespace

Uuid Uuid::random()
{
    Uuid result;
    uuid_generate_random(result.m_bytes.data());
    return result;
}

std::optional<Uuid> Uuid::fromText(std::string_view text)
{
    // Written out rather than left to uuid_parse: a history of years holds 100,000 of these, and uuid_parse
    // wants a terminated string and goes through the C library's locale.
    if (text.size() != textLength) {
        return std::nullopt;
    }
    Uuid result;
    std::size_t byte = 0;
    for (std::size_t position = 0; position < textLength;) {
        if (isHyphenPosition(position)) {
            if (text[position] != '-') {
                return std::nullopt;
            }
            ++position;
            continue;
        }
        const int high = hexDigit(text[position]);
        const int low = hexDigit(text[position + 1]);
        if (high < 0 || low < 0) {
            return std::nullopt;
        }
        result.m_bytes[byte++] = static_cast<unsigned char>(high * 16 + low);
        position += 2;
    }
    return result;
}

std::string Uuid::text() const
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result;
    result.reserve(textLength);
    for (std::size_t byte = 0; byte < m_bytes.size(); ++byte) {
        if (byte == 4 || byte == 6 || byte == 8 || byte == 10) {
            result += '-';
        }
        result += digits[m_bytes[byte] >> 4U];
        result += digits[m_bytes[byte] & 0xFU];
    }
    return result;
}

} // namespace brevlin
