#include "core/key_combination.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace brevlin {
namespace {

std::string read(std::string_view text)
{
    const auto combination = KeyCombination::fromText(text);
    return combination ? combination->text() : "";
}

TEST(KeyCombination, is_read_in_any_order_and_written_in_one)
{
    for (const auto& [text, expected] : {std::pair{"Ctrl+Alt+P", "Ctrl+Alt+P"},
                                         {"Super+Shift+Alt+Ctrl+p", "Ctrl+Alt+Shift+Super+P"},
                                         {"Alt+ö", "Alt+Ö"},
                                         {"Alt+÷", "Alt+÷"},
                                         {"Alt+ß", "Alt+ß"},
                                         {"Ctrl+Plus", "Ctrl+Plus"},
                                         {"Super+Space", "Super+Space"},
                                         {"Ctrl+;", "Ctrl+;"},
                                         {"Super+Num5", "Super+Num5"},
                                         {"F13", "F13"},
                                         {"Shift+F1", "Shift+F1"},
                                         {"MediaPlay", "MediaPlay"}}) {
        EXPECT_EQ(read(text), expected);
        EXPECT_EQ(read(expected), expected);
    }
}

TEST(KeyCombination, that_would_take_a_letter_or_is_none_is_refused)
{
    for (const char* text : {"P",         "p",        "7",           "Shift+P", "Space",     "Shift+Tab",
                             "Left",      "Num5",     "Escape",      "",        "Ctrl",      "Ctrl+",
                             "Ctrl++",    "+P",       "Ctrl+Ctrl+P", "ctrl+P",  "Meta+P",    "Ctrl+Alt",
                             "Ctrl+PP",   "Ctrl+f1",  "Ctrl+F25",    "Ctrl+中", "Ctrl+\x01", "Ctrl+\xC2\xA0",
                             "Ctrl+\xC3", "Ctrl+\xFF"}) {
        EXPECT_EQ(read(text), "") << text;
    }
}

TEST(KeyCombination, every_key_has_one_name)
{
    for (char32_t character = 0; character < 0x180; ++character) {
        if (const auto key = keyOfCharacter(character)) {
            EXPECT_EQ(keyOfCharacter(characterOfKey(*key).value()), key);
        }
    }
    EXPECT_EQ(keyOfCharacter(U'a'), keyOfCharacter(U'A'));
    EXPECT_FALSE(characterOfKey("F1"));
}

} // namespace
} // namespace brevlin
