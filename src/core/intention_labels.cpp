#include "core/intention_labels.h"

#include <unicode/uchar.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace brevlin {

namespace {

bool isAsciiWord(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z');
}

// The character that begins here, and its length. What is no UTF-8 is a character of one byte.
std::pair<UChar32, std::size_t> characterAt(std::string_view text, std::size_t at)
{
    const auto lead = static_cast<unsigned char>(text[at]);
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    UChar32 character = length == 1 ? lead : lead & (0x7FU >> length);
    for (std::size_t index = 1; index < length; ++index) {
        if (at + index >= text.size() || (static_cast<unsigned char>(text[at + index]) & 0xC0U) != 0x80U) {
            return {lead, 1};
        }
        character = character << 6 | (static_cast<unsigned char>(text[at + index]) & 0x3F);
    }
    return {character, length};
}

// Symbols belong to a word, because an emoji is one.
bool isOfWord(UChar32 character)
{
    return character == '_' || character == '-' || u_isalnum(character) != 0 ||
           (character >= 0x80 && u_ispunct(character) == 0 && u_isUWhiteSpace(character) == 0 &&
            u_iscntrl(character) == 0);
}

std::size_t wordLength(std::string_view text)
{
    std::size_t end = 0;
    while (end < text.size()) {
        const auto [character, length] = characterAt(text, end);
        if (!isOfWord(character)) {
            break;
        }
        end += length;
    }
    return end;
}

} // namespace

std::vector<std::string_view> intentionLabels(std::string_view intention)
{
    std::vector<std::string_view> labels;
    for (std::size_t at = intention.find('#'); at != std::string_view::npos;
         at = intention.find('#', at + 1)) {
        if (at > 0 && isAsciiWord(intention[at - 1])) {
            continue;
        }
        const std::string_view behind = intention.substr(at + 1);
        const std::string_view label = behind.substr(0, wordLength(behind));
        if (!label.empty() && std::find(labels.begin(), labels.end(), label) == labels.end()) {
            labels.push_back(label);
        }
    }
    return labels;
}

} // namespace brevlin
