#pragma once

#include <optional>

namespace brevlin {

/// Where the desktop shows its banners, on the primary screen and counted from the top of its work area;
/// points.
struct BannerPlace
{
    enum class Position { topCentre, topRight };

    Position position = Position::topRight;
    double width = 0;  ///< of a banner of ours, generously
    double height = 0; ///< likewise, with its distance from the top
    /// Whether a notification of low urgency goes to the desktop's list without a banner.
    bool hasQuietList = false;

    bool operator==(const BannerPlace&) const = default;
};

} // namespace brevlin
