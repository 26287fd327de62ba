#pragma once

#include "core/shortcut_action.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace brevlin {

/// The keys that are held while another one is pressed.
struct KeyModifiers
{
    bool control = false;
    bool alt = false;
    bool shift = false;
    bool super = false;

    bool operator==(const KeyModifiers&) const = default;
};

/// A key and what is held with it, such as "Ctrl+Alt+P". Never one that would take a letter, a digit or the
/// way through a text from all other programs: those keys need Ctrl, Alt or Super. A key is named by what it
/// gives without any modifier: a printable character of Latin 1, letters in upper case, or one of
/// namedKeys().
class KeyCombination final
{
public:
    /// Nothing where the key is unknown or needs a modifier.
    static std::optional<KeyCombination> of(KeyModifiers modifiers, std::string_view key);
    /// What text() gives, modifiers in any order; the letters' case does not count.
    static std::optional<KeyCombination> fromText(std::string_view text);

    KeyModifiers modifiers() const { return m_modifiers; }
    const std::string& key() const { return m_key; }
    /// The same in both languages, and on the disk.
    std::string text() const;

    bool operator==(const KeyCombination&) const = default;

private:
    KeyCombination(KeyModifiers modifiers, std::string key) : m_modifiers(modifiers), m_key(std::move(key)) {}

    KeyModifiers m_modifiers;
    std::string m_key;
};

using ShortcutKeys = ForEachShortcut<std::optional<KeyCombination>>;

/// The modifiers alone, each with a plus behind it, as the text of a combination begins.
std::string text(KeyModifiers modifiers);
/// Every key that is no character of its own. "Space" and "Plus" are characters that a text would lose.
std::span<const std::string_view> namedKeys();
/// The name of the key that gives this character, of Latin 1; nothing where it gives nothing to be seen.
std::optional<std::string> keyOfCharacter(char32_t character);
/// The character that a key gives; nothing for a key that only has a name.
std::optional<char32_t> characterOfKey(std::string_view key);

} // namespace brevlin
