#include "core/uuid.h"

#include <uuid/uuid.h>

namespace brevlin {

namespace {

constexpr std::size_t textLength = 36;

constexpr unsigned char noDigit = 0x80;

constexpr auto digitValues = [] {
    std::array<unsigned char, 256> values{};
    values.fill(noDigit);
    for (unsigned char digit = 0; digit < 16; ++digit) {
        values.at(static_cast<std::size_t>("0123456789ABCDEF"[digit])) = digit;
        values.at(static_cast<std::size_t>("0123456789abcdef"[digit])) = digit;
    }
    return values;
}();

/// Where the two digits of each byte stand.
constexpr std::array<std::size_t, 16> bytePositions{0,  2,  4,  6,  9,  11, 14, 16,
                                                    19, 21, 24, 26, 28, 30, 32, 34};
constexpr std::array<std::size_t, 4> hyphenPositions{8, 13, 18, 23};

} // namespace

Uuid Uuid::random()
{
    Uuid result;
    uuid_generate_random(result.m_bytes.data());
    return result;
}

Uuid Uuid::named(std::string_view text)
{
    static const Uuid nameSpace = *fromText("6F1C2B0E-58D3-4C7A-9A41-0D7E5B3C9F26");
    Uuid result;
    uuid_generate_sha1(result.m_bytes.data(), nameSpace.m_bytes.data(), text.data(), text.size());
    return result;
}

std::optional<Uuid> Uuid::fromText(std::string_view text)
{
    // Written out rather than left to uuid_parse: a history of years holds 100,000 of these, and uuid_parse
    // wants a terminated string and goes through the C library's locale.
    if (text.size() != textLength) {
        return std::nullopt;
    }
    bool isValid = true;
    for (const std::size_t position : hyphenPositions) {
        isValid = isValid && text[position] == '-';
    }
    const auto digit = [text](std::size_t position) -> unsigned {
        return digitValues[static_cast<unsigned char>(text[position])];
    };
    Uuid result;
    unsigned all = 0;
    for (std::size_t byte = 0; byte < bytePositions.size(); ++byte) {
        const unsigned high = digit(bytePositions[byte]);
        const unsigned low = digit(bytePositions[byte] + 1);
        all |= high | low;
        result.m_bytes[byte] = static_cast<unsigned char>(high * 16 + low);
    }
    return isValid && all < noDigit ? std::optional{result} : std::nullopt;
}

std::string Uuid::text() const
{
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string result(textLength, '-');
    for (std::size_t byte = 0; byte < bytePositions.size(); ++byte) {
        result[bytePositions[byte]] = digits[m_bytes[byte] >> 4U];
        result[bytePositions[byte] + 1] = digits[m_bytes[byte] & 0xFU];
    }
    return result;
}

} // namespace brevlin
