#include "platform/freedesktop/shortcuts/keyboard_map.h"

#include <X11/keysym.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace brevlin {
namespace {

constexpr std::uint8_t firstKeycode = 8;
using Keycodes = std::vector<std::uint8_t>;

/// Four symbols a key: two of each of two layouts, of which the first may be Cyrillic.
KeyboardMap map()
{
    KeyboardMap map{firstKeycode, 4, {}, 2, Keycodes(16, 0)};
    const auto add = [&](std::uint32_t plain, std::uint32_t shifted, std::uint32_t other,
                         std::uint32_t otherShifted) {
        map.symbols.insert(map.symbols.end(), {plain, shifted, other, otherShifted});
    };
    add(XK_z, XK_Z, XK_y, XK_Y);                     // 8
    add(XK_y, XK_Y, XK_z, XK_Z);                     // 9
    add(XK_Cyrillic_ef, XK_Cyrillic_EF, XK_a, XK_A); // 10
    add(XK_1, XK_exclam, 0, 0);                      // 11
    add(XK_KP_End, XK_KP_1, 0, 0);                   // 12
    add(XK_F5, XK_F5, 0, 0);                         // 13
    add(XK_Alt_R, XK_Meta_R, 0, 0);                  // 14
    add(XK_Num_Lock, 0, 0, 0);                       // 15
    add(XK_Super_L, 0, 0, 0);                        // 16
    map.modifierKeycodes[3 * 2 + 1] = 14;            // Mod1
    map.modifierKeycodes[4 * 2] = 15;                // Mod2
    map.modifierKeycodes[6 * 2] = 16;                // Mod4
    return map;
}

TEST(KeyboardMap, names_a_key_by_its_first_layout_that_has_a_name_for_it)
{
    const KeyboardMap keyboard = map();
    for (const auto& [keycode, key] :
         {std::pair{8U, "Z"}, {9U, "Y"}, {10U, "A"}, {11U, "1"}, {12U, "Num1"}, {13U, "F5"}}) {
        EXPECT_EQ(keyboard.keyAt(keycode), key);
        EXPECT_EQ(keyboard.keycodesOf(key), Keycodes{static_cast<std::uint8_t>(keycode)});
    }
    for (const std::uint32_t keycode : {0U, 7U, 14U, 16U, 17U, 255U, 100'000U}) {
        EXPECT_FALSE(keyboard.keyAt(keycode)) << keycode;
    }
    EXPECT_EQ(keyboard.keycodesOf("!"), Keycodes{});
    EXPECT_EQ(KeyboardMap{}.keycodesOf("A"), Keycodes{}) << "nothing is known of the keyboard";
}

TEST(KeyboardMap, finds_the_modifiers_where_this_keyboard_has_them)
{
    KeyboardMap keyboard = map();
    EXPECT_EQ(keyboard.bits({.control = true, .shift = true}), 4 | 1);
    EXPECT_EQ(keyboard.bits({.alt = true, .super = true}), 8 | 64);
    EXPECT_EQ(keyboard.modifierBits(), 1 | 4 | 8 | 64);
    EXPECT_EQ(keyboard.lockStates(), (std::vector<std::uint16_t>{0, 2, 16, 2 | 16}));
    keyboard.modifierKeycodes[6 * 2] = 0;
    EXPECT_FALSE(keyboard.bits({.control = true, .super = true}));
    EXPECT_EQ(keyboard.modifierBits(), 1 | 4 | 8);
}

TEST(KeyboardMap, every_named_key_has_a_symbol)
{
    std::vector<std::string> found;
    for (const std::uint32_t page : {0U, 0xFE00U, 0xFF00U, 0x1008FF00U}) {
        for (std::uint32_t symbol = page; symbol < page + 0x100; ++symbol) {
            if (const auto key = keyOfSymbol(symbol)) {
                found.push_back(*key);
            }
        }
    }
    for (const std::string_view key : namedKeys()) {
        EXPECT_NE(std::ranges::find(found, key), found.end()) << key;
    }
    for (const std::string& key : found) {
        EXPECT_TRUE(KeyCombination::of({.control = true}, key)) << key;
    }
}

} // namespace
} // namespace brevlin
