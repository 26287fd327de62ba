#include "core/intention.h"

#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf16.h>

#include <algorithm>

namespace brevlin {

namespace {

std::string utf8(const icu::UnicodeString& text)
{
    std::string result;
    text.toUTF8String(result);
    return result;
}

icu::UnicodeString unicode(std::string_view text)
{
    return icu::UnicodeString::fromUTF8({text.data(), static_cast<int32_t>(text.size())});
}

bool isLineBreak(UChar32 character)
{
    return (character >= 0x0A && character <= 0x0D) || character == 0x85 || character == 0x2028 ||
           character == 0x2029;
}

// The full-width one is what Chinese input methods type.
bool isLabelSign(UChar32 character)
{
    return character == '#' || character == 0xFF03;
}

bool isLetterOrMark(UChar32 character)
{
    return u_isalnum(character) || (U_GET_GC_MASK(character) & U_GC_M_MASK) != 0;
}

bool isJoiner(UChar32 character)
{
    return character == '-' || character == '_' || character == '.' || character == '/' || character == '+';
}

} // namespace

std::string typedIntention(std::string_view text, std::size_t longest)
{
    const icu::UnicodeString typed = unicode(text);
    icu::UnicodeString result;
    std::size_t count = 0;
    bool isBreak = false;
    for (int32_t at = 0; at < typed.length() && count < longest; at = typed.moveIndex32(at, 1)) {
        const UChar32 character = typed.char32At(at);
        if (isLineBreak(character)) {
            isBreak = !result.isEmpty();
            continue;
        }
        if (result.isEmpty() && u_isUWhiteSpace(character)) {
            continue;
        }
        if (isBreak) {
            isBreak = false;
            result.append(static_cast<UChar>(' '));
            if (++count == longest) {
                break;
            }
        }
        result.append(character);
        ++count;
    }
    while (!result.isEmpty() && u_isUWhiteSpace(result.charAt(result.length() - 1))) {
        result.truncate(result.length() - 1);
    }
    return utf8(result);
}

std::vector<std::string> labels(std::string_view intention)
{
    std::vector<std::string> result;
    if (intention.find('#') == std::string_view::npos &&
        intention.find("\xEF\xBC\x83") == std::string_view::npos) {
        return result;
    }
    const icu::UnicodeString text = unicode(intention);
    UChar32 before = ' ';
    for (int32_t at = 0; at < text.length();) {
        const UChar32 character = text.char32At(at);
        const int32_t next = text.moveIndex32(at, 1);
        const bool follows = isLetterOrMark(before) && !u_hasBinaryProperty(before, UCHAR_IDEOGRAPHIC);
        before = character;
        if (!isLabelSign(character) || follows) {
            at = next;
            continue;
        }
        int32_t end = next;
        int32_t wordEnd = next; // without the joiners at the end
        while (end < text.length()) {
            const UChar32 inside = text.char32At(end);
            if (!isLetterOrMark(inside) && !isJoiner(inside)) {
                break;
            }
            end = text.moveIndex32(end, 1);
            wordEnd = isJoiner(inside) ? wordEnd : end;
        }
        if (wordEnd > next) {
            std::string label = utf8(text.tempSubStringBetween(next, wordEnd));
            if (std::find(result.begin(), result.end(), label) == result.end()) {
                result.push_back(std::move(label));
            }
            before = text.char32At(text.moveIndex32(wordEnd, -1));
        }
        at = std::max(wordEnd, next);
    }
    return result;
}

} // namespace brevlin
