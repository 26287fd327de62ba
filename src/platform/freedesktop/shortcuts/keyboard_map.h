#pragma once

#include "core/key_combination.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brevlin {

/// What the X server tells of its keyboard: the symbols of each key and which keys are modifiers
/// (https://www.x.org/releases/current/doc/xproto/x11protocol.html#Keyboards). A key is named by what it
/// gives in the first layout, or in the second where the first has no name for it, so that a key stays the
/// same when the user writes in another layout.
struct KeyboardMap
{
    std::uint8_t firstKeycode = 0;
    std::size_t symbolsPerKeycode = 0;
    std::vector<std::uint32_t> symbols; ///< as many for each keycode
    std::size_t keycodesPerModifier = 0;
    std::vector<std::uint8_t> modifierKeycodes; ///< as many for each of the eight modifiers; 0 for none

    bool operator==(const KeyboardMap&) const = default;

    std::optional<std::string> keyAt(std::uint32_t keycode) const;
    std::vector<std::uint8_t> keycodesOf(std::string_view key) const;
    /// The bits of these modifiers in the state of an event; nothing where the keyboard lacks one.
    std::optional<std::uint16_t> bits(KeyModifiers modifiers) const;
    /// The bits of all modifiers that the keyboard has, but those that lock.
    std::uint16_t modifierBits() const;
    /// Every state of the keys that lock, as bits: no press is to be missed for them.
    std::vector<std::uint16_t> lockStates() const;

private:
    std::uint32_t symbol(std::uint32_t keycode, std::size_t column) const;
    std::uint16_t modifierWith(std::uint32_t symbol) const;
};

/// The name of the key that gives a symbol of X11 (X11/keysymdef.h); nothing where it has none.
std::optional<std::string> keyOfSymbol(std::uint32_t symbol);

} // namespace brevlin
