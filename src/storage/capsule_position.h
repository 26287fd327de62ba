#pragma once

#include "core/expected.h"
#include "core/raw_value.h"
#include "storage/kept_document.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

/// Which point of the capsule stays where it is when its width changes; left and right as on the screen.
enum class HorizontalAnchor { center, leading, trailing };

template <>
struct RawValues<HorizontalAnchor>
{
    static constexpr std::array cases{
        RawValueCase<HorizontalAnchor>{HorizontalAnchor::center, "center"},
        RawValueCase<HorizontalAnchor>{HorizontalAnchor::leading, "leading"},
        RawValueCase<HorizontalAnchor>{HorizontalAnchor::trailing, "trailing"},
    };
};

/// Where the capsule was left, as fractions of a display's visible frame. What the fractions mean depends on
/// the version; this release writes version 5 with the anchor center.
struct SavedPosition
{
    static constexpr std::int64_t currentVersion = 5;

    std::optional<std::uint32_t> displayID;
    double xFraction = 0;
    double yFraction = 0;
    std::optional<std::int64_t> version;
    std::optional<HorizontalAnchor> horizontalAnchor;

    bool operator==(const SavedPosition&) const = default;
};

Expected<std::string, DocumentError> encode(const SavedPosition& position);
Expected<SavedPosition, DocumentError> decodeSavedPosition(const std::string& document);

/// Keeps the capsule's position. It is a convenience: what cannot be read counts as absent and is left as it
/// is until the next save.
class CapsulePositionStore final
{
public:
    static constexpr std::string_view key = "Brevlin.topPanel.position.v1";
    /// Where the first release kept it, under its former name.
    static constexpr std::string_view legacyKey = "Kestrove.topPanel.position.v1";

    explicit CapsulePositionStore(const DocumentDisk& disk);

    /// Moves a document under the legacy key to the current one.
    std::optional<SavedPosition> load();
    /// An error means that the position cannot be expressed. Otherwise it is written as soon as the disk
    /// takes it.
    Expected<void, DocumentError> save(const SavedPosition& position);

private:
    KeptDocument m_document;
};

} // namespace brevlin
