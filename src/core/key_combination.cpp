#include "core/key_combination.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brevlin {

namespace {

using namespace std::string_view_literals;

constexpr std::array names{
    // These write, or move in a text.
    "Space"sv, "Plus"sv, "Tab"sv, "Return"sv, "Backspace"sv, "Delete"sv, "Insert"sv, "Escape"sv, "Home"sv,
    "End"sv, "PageUp"sv, "PageDown"sv, "Left"sv, "Right"sv, "Up"sv, "Down"sv, "Num0"sv, "Num1"sv, "Num2"sv,
    "Num3"sv, "Num4"sv, "Num5"sv, "Num6"sv, "Num7"sv, "Num8"sv, "Num9"sv, "NumDecimal"sv, "NumAdd"sv,
    "NumSubtract"sv, "NumMultiply"sv, "NumDivide"sv, "NumEnter"sv,
    // These do not.
    "F1"sv, "F2"sv, "F3"sv, "F4"sv, "F5"sv, "F6"sv, "F7"sv, "F8"sv, "F9"sv, "F10"sv, "F11"sv, "F12"sv,
    "F13"sv, "F14"sv, "F15"sv, "F16"sv, "F17"sv, "F18"sv, "F19"sv, "F20"sv, "F21"sv, "F22"sv, "F23"sv,
    "F24"sv, "Print"sv, "Pause"sv, "ScrollLock"sv, "Menu"sv, "MediaPlay"sv, "MediaPause"sv, "MediaStop"sv,
    "MediaNext"sv, "MediaPrevious"sv, "Launch1"sv, "Launch2"sv, "Launch3"sv, "Launch4"sv, "Launch5"sv,
    "Launch6"sv, "Launch7"sv, "Launch8"sv, "Launch9"sv, "Calculator"sv, "Mail"sv, "Tools"sv};
constexpr std::string_view firstThatNeedsNoModifier = "F1";

constexpr char32_t space = U' ';
constexpr char32_t lastOfAscii = 0x7E;
constexpr char32_t firstOfLatin1 = 0xA1; // that can be seen
constexpr char32_t lastOfLatin1 = 0xFF;
constexpr char32_t divisionSign = 0xF7;
constexpr char32_t upperCaseDistance = 0x20;

// ß and ÿ have no upper case in Latin 1.
char32_t upperCase(char32_t character)
{
    const bool isLetter = (character >= U'a' && character <= U'z') ||
                          (character >= 0xE0 && character < lastOfLatin1 && character != divisionSign);
    return isLetter ? character - upperCaseDistance : character;
}

std::string utf8(char32_t character)
{
    if (character <= lastOfAscii) {
        return {static_cast<char>(character)};
    }
    return {static_cast<char>(0xC0 | (character >> 6)), static_cast<char>(0x80 | (character & 0x3F))};
}

std::optional<char32_t> onlyCharacter(std::string_view text)
{
    const auto byte = [text](std::size_t index) {
        return static_cast<char32_t>(static_cast<unsigned char>(text[index]));
    };
    if (text.size() == 1 && byte(0) <= lastOfAscii) {
        return byte(0);
    }
    const bool isLatin1 =
        text.size() == 2 && (byte(0) == 0xC2 || byte(0) == 0xC3) && (byte(1) & 0xC0) == 0x80;
    return isLatin1 ? std::optional{((byte(0) & 0x1F) << 6) | (byte(1) & 0x3F)} : std::nullopt;
}

// The key by the name that it always has.
std::optional<std::string> knownKey(std::string_view key)
{
    const auto* name = std::ranges::find(names, key);
    if (name != names.end()) {
        return std::string(*name);
    }
    const auto character = onlyCharacter(key);
    return character ? keyOfCharacter(*character) : std::nullopt;
}

bool needsModifier(std::string_view key)
{
    const auto* first = std::ranges::find(names, firstThatNeedsNoModifier);
    return std::find(first, names.end(), key) == names.end();
}

} // namespace

std::span<const std::string_view> namedKeys()
{
    return names;
}

std::optional<std::string> keyOfCharacter(char32_t character)
{
    if (character == space) {
        return "Space";
    }
    if (character == U'+') {
        return "Plus";
    }
    const bool isVisible = (character > space && character <= lastOfAscii) ||
                           (character >= firstOfLatin1 && character <= lastOfLatin1);
    return isVisible ? std::optional{utf8(upperCase(character))} : std::nullopt;
}

std::optional<char32_t> characterOfKey(std::string_view key)
{
    if (key == "Space") {
        return space;
    }
    return key == "Plus" ? U'+' : onlyCharacter(key);
}

std::optional<KeyCombination> KeyCombination::of(KeyModifiers modifiers, std::string_view key)
{
    auto known = knownKey(key);
    const bool isHeld = modifiers.control || modifiers.alt || modifiers.super;
    if (!known || (!isHeld && needsModifier(*known))) {
        return std::nullopt;
    }
    return KeyCombination(modifiers, *std::move(known));
}

std::optional<KeyCombination> KeyCombination::fromText(std::string_view text)
{
    KeyModifiers modifiers;
    for (std::size_t plus = text.find('+'); plus != std::string_view::npos; plus = text.find('+')) {
        const std::string_view name = text.substr(0, plus);
        bool* modifier = name == "Ctrl"    ? &modifiers.control
                         : name == "Alt"   ? &modifiers.alt
                         : name == "Shift" ? &modifiers.shift
                         : name == "Super" ? &modifiers.super
                                           : nullptr;
        if (modifier == nullptr || std::exchange(*modifier, true)) {
            return std::nullopt;
        }
        text.remove_prefix(plus + 1);
    }
    return of(modifiers, text);
}

std::string KeyCombination::text() const
{
    return brevlin::text(m_modifiers) + m_key;
}

std::string text(KeyModifiers modifiers)
{
    std::string result;
    result += modifiers.control ? "Ctrl+" : "";
    result += modifiers.alt ? "Alt+" : "";
    result += modifiers.shift ? "Shift+" : "";
    result += modifiers.super ? "Super+" : "";
    return result;
}

} // namespace brevlin
