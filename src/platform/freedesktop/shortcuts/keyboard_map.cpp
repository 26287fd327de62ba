#include "platform/freedesktop/shortcuts/keyboard_map.h"

#include <X11/XF86keysym.h>
#include <X11/keysym.h>

#include <algorithm>
#include <array>
#include <utility>

namespace brevlin {

namespace {

// Of the state of an event, and the places in the table of the modifiers.
constexpr std::uint16_t shiftBit = 1U << 0;
constexpr std::uint16_t capsLockBit = 1U << 1;
constexpr std::uint16_t controlBit = 1U << 2;
constexpr std::size_t firstFreeModifier = 3;
constexpr std::size_t modifierCount = 8;

constexpr std::array<std::pair<std::uint32_t, std::string_view>, 65> namedSymbols{{
    {XK_Tab, "Tab"},
    {XK_ISO_Left_Tab, "Tab"},
    {XK_Return, "Return"},
    {XK_BackSpace, "Backspace"},
    {XK_Delete, "Delete"},
    {XK_Insert, "Insert"},
    {XK_Escape, "Escape"},
    {XK_Home, "Home"},
    {XK_End, "End"},
    {XK_Page_Up, "PageUp"},
    {XK_Page_Down, "PageDown"},
    {XK_Left, "Left"},
    {XK_Right, "Right"},
    {XK_Up, "Up"},
    {XK_Down, "Down"},
    // The keypad gives its other symbols while the numbers are locked.
    {XK_KP_Insert, "Num0"},
    {XK_KP_End, "Num1"},
    {XK_KP_Down, "Num2"},
    {XK_KP_Page_Down, "Num3"},
    {XK_KP_Left, "Num4"},
    {XK_KP_Begin, "Num5"},
    {XK_KP_Right, "Num6"},
    {XK_KP_Home, "Num7"},
    {XK_KP_Up, "Num8"},
    {XK_KP_Page_Up, "Num9"},
    {XK_KP_Delete, "NumDecimal"},
    {XK_KP_0, "Num0"},
    {XK_KP_1, "Num1"},
    {XK_KP_2, "Num2"},
    {XK_KP_3, "Num3"},
    {XK_KP_4, "Num4"},
    {XK_KP_5, "Num5"},
    {XK_KP_6, "Num6"},
    {XK_KP_7, "Num7"},
    {XK_KP_8, "Num8"},
    {XK_KP_9, "Num9"},
    {XK_KP_Decimal, "NumDecimal"},
    {XK_KP_Separator, "NumDecimal"},
    {XK_KP_Add, "NumAdd"},
    {XK_KP_Subtract, "NumSubtract"},
    {XK_KP_Multiply, "NumMultiply"},
    {XK_KP_Divide, "NumDivide"},
    {XK_KP_Enter, "NumEnter"},
    {XK_Print, "Print"},
    {XK_Sys_Req, "Print"},
    {XK_Pause, "Pause"},
    {XK_Scroll_Lock, "ScrollLock"},
    {XK_Menu, "Menu"},
    {XF86XK_AudioPlay, "MediaPlay"},
    {XF86XK_AudioPause, "MediaPause"},
    {XF86XK_AudioStop, "MediaStop"},
    {XF86XK_AudioNext, "MediaNext"},
    {XF86XK_AudioPrev, "MediaPrevious"},
    {XF86XK_Calculator, "Calculator"},
    {XF86XK_Mail, "Mail"},
    {XF86XK_Tools, "Tools"},
    {XF86XK_Launch1, "Launch1"},
    {XF86XK_Launch2, "Launch2"},
    {XF86XK_Launch3, "Launch3"},
    {XF86XK_Launch4, "Launch4"},
    {XF86XK_Launch5, "Launch5"},
    {XF86XK_Launch6, "Launch6"},
    {XF86XK_Launch7, "Launch7"},
    {XF86XK_Launch8, "Launch8"},
    {XF86XK_Launch9, "Launch9"},
}};
constexpr std::uint32_t lastOfLatin1 = 0xFF; // its symbols are its characters

} // namespace

std::optional<std::string> keyOfSymbol(std::uint32_t symbol)
{
    if (symbol <= lastOfLatin1) {
        return keyOfCharacter(symbol);
    }
    if (symbol >= XK_F1 && symbol <= XK_F24) {
        return "F" + std::to_string(symbol - XK_F1 + 1);
    }
    const auto* named =
        std::ranges::find(namedSymbols, symbol, &std::pair<std::uint32_t, std::string_view>::first);
    return named != namedSymbols.end() ? std::optional{std::string(named->second)} : std::nullopt;
}

std::uint32_t KeyboardMap::symbol(std::uint32_t keycode, std::size_t column) const
{
    const std::size_t index = (keycode - firstKeycode) * symbolsPerKeycode + column;
    return keycode >= firstKeycode && column < symbolsPerKeycode && index < symbols.size() ? symbols[index]
                                                                                           : 0;
}

std::optional<std::string> KeyboardMap::keyAt(std::uint32_t keycode) const
{
    constexpr std::size_t secondLayout = 2; // each of the first two has two columns
    auto key = keyOfSymbol(symbol(keycode, 0));
    return key ? key : keyOfSymbol(symbol(keycode, secondLayout));
}

std::vector<std::uint8_t> KeyboardMap::keycodesOf(std::string_view key) const
{
    std::vector<std::uint8_t> found;
    const std::size_t count = symbolsPerKeycode == 0 ? 0 : symbols.size() / symbolsPerKeycode;
    for (std::size_t index = 0; index < count; ++index) {
        const auto keycode = static_cast<std::uint8_t>(firstKeycode + index);
        if (keyAt(keycode) == key) {
            found.push_back(keycode);
        }
    }
    return found;
}

std::uint16_t KeyboardMap::modifierWith(std::uint32_t symbol) const
{
    for (std::size_t index = firstFreeModifier * keycodesPerModifier; index < modifierKeycodes.size();
         ++index) {
        const std::uint8_t keycode = modifierKeycodes[index];
        for (std::size_t column = 0; keycode != 0 && column < symbolsPerKeycode; ++column) {
            const std::size_t modifier = index / keycodesPerModifier;
            if (modifier < modifierCount && this->symbol(keycode, column) == symbol) {
                return static_cast<std::uint16_t>(1U << modifier);
            }
        }
    }
    return 0;
}

std::optional<std::uint16_t> KeyboardMap::bits(KeyModifiers modifiers) const
{
    const auto either = [this](std::uint32_t left, std::uint32_t right) {
        const std::uint16_t bit = modifierWith(left);
        return bit != 0 ? bit : modifierWith(right);
    };
    const std::array<std::pair<bool, std::uint16_t>, 4> all{{
        {modifiers.shift, shiftBit},
        {modifiers.control, controlBit},
        {modifiers.alt, either(XK_Alt_L, XK_Alt_R)},
        {modifiers.super, either(XK_Super_L, XK_Super_R)},
    }};
    std::uint16_t result = 0;
    for (const auto& [isWanted, bit] : all) {
        if (isWanted && bit == 0) {
            return std::nullopt;
        }
        result = static_cast<std::uint16_t>(result | (isWanted ? bit : 0U));
    }
    return result;
}

std::uint16_t KeyboardMap::modifierBits() const
{
    const KeyModifiers alt{.alt = true};
    const KeyModifiers super{.super = true};
    return static_cast<std::uint16_t>(shiftBit | controlBit | bits(alt).value_or(0) |
                                      bits(super).value_or(0));
}

std::vector<std::uint16_t> KeyboardMap::lockStates() const
{
    std::vector<std::uint16_t> states{0};
    for (const std::uint16_t lock : {capsLockBit, modifierWith(XK_Num_Lock), modifierWith(XK_Scroll_Lock)}) {
        const std::size_t count = states.size();
        for (std::size_t index = 0; lock != 0 && index < count; ++index) {
            states.push_back(static_cast<std::uint16_t>(states[index] | lock));
        }
    }
    return states;
}

} // namespace brevlin
