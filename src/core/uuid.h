#pragma once

#include <array>
#include <compare>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// A universally unique identifier (RFC 9562, https://www.rfc-editor.org/rfc/rfc9562).
class Uuid final
{
public:
    /// The nil UUID.
    Uuid() = default;

    /// A new random (version 4) UUID.
    static Uuid random();
    /// The same (version 5) UUID for the same text, in a name space of ours.
    static Uuid named(std::string_view text);
    /// Reads the 36-character form with hyphens, in either letter case; nothing for any other text.
    static std::optional<Uuid> fromText(std::string_view text);

    /// The canonical 36-character form in upper case.
    std::string text() const;

    // NOLINTNEXTLINE(modernize-use-nullptr): clang-tidy 14 sees a 0 in every use of <
    auto operator<=>(const Uuid&) const = default;

private:
    std::array<unsigned char, 16> m_bytes{};
};

} // namespace brevlin
