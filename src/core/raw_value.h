#pragma once

#include <array>
#include <cassert>
#include <optional>
#include <string_view>
#include <utility>

namespace brevlin {

/// Specialised for each string-backed enumeration: `static constexpr std::array cases` of (case, raw string)
/// pairs in the order of pickers. The raw strings are a storage format and never change.
template <typename E>
struct RawValues;

template <typename E>
using RawValueCase = std::pair<E, std::string_view>;

/// The string that is stored for this case.
template <typename E>
constexpr std::string_view rawValue(E value)
{
    for (const auto& [candidate, text] : RawValues<E>::cases) {
        if (candidate == value) {
            return text;
        }
    }
    assert(false && "an enumeration value without a raw string");
    return {};
}

/// The case with exactly this raw string (letter case counts), or nothing.
template <typename E>
constexpr std::optional<E> fromRawValue(std::string_view text)
{
    for (const auto& [candidate, raw] : RawValues<E>::cases) {
        if (raw == text) {
            return candidate;
        }
    }
    return std::nullopt;
}

/// All cases in the order of pickers.
template <typename E>
constexpr auto allCases()
{
    std::array<E, RawValues<E>::cases.size()> result{};
    for (std::size_t index = 0; index < result.size(); ++index) {
        result[index] = RawValues<E>::cases[index].first;
    }
    return result;
}

} // namespace brevlin
