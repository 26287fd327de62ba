#pragma once

#include "app/capsule.h"
#include "storage/capsule_position.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace brevlin {

// Where the capsule lies, as pure arithmetic. Coordinates are points with the origin at the bottom left of
// the primary screen and y upwards; CapsuleFrame's x and y are its lower left corner.

struct CapsuleSize
{
    double width = 0;
    double height = 0;

    bool operator==(const CapsuleSize&) const = default;
};

struct CapsulePoint
{
    double x = 0;
    double y = 0;

    bool operator==(const CapsulePoint&) const = default;
};

struct CapsuleFrame
{
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    double midX() const { return x + width / 2; }
    double midY() const { return y + height / 2; }
    double maxX() const { return x + width; }
    double maxY() const { return y + height; }
    bool contains(CapsulePoint point) const
    {
        return point.x >= x && point.x < maxX() && point.y >= y && point.y < maxY();
    }
    bool operator==(const CapsuleFrame&) const = default;
};

/// An attached screen.
struct CapsuleScreen
{
    std::optional<std::uint32_t> displayID; ///< stays the same for a monitor across restarts
    CapsuleFrame frame;
    CapsuleFrame visibleFrame; ///< without the desktop's panels
};

/// What stays put while the capsule changes its width: the centre of the compact circle and the top edge.
struct StablePosition
{
    std::optional<std::uint32_t> displayID;
    double compactCenterX = 0;
    double topY = 0;

    bool operator==(const StablePosition&) const = default;
};

namespace CapsuleGeometry {

/// The compact circle's diameter, and the distance of its centre from a leading or trailing end.
inline constexpr double compactReferenceDiameter = 50;
inline constexpr double compactReferenceRadius = compactReferenceDiameter / 2;
/// A capsule that is dropped at most this far from a side edge of the visible frame snaps to it.
inline constexpr double snapDistance = 50;

/// The layout's size as far as the visible frame has room for it.
CapsuleSize fittedSize(const CapsuleLayout& layout, const CapsuleFrame& visibleFrame);
/// Not yet clamped.
CapsuleFrame frame(const StablePosition& position, CapsuleSize size, HorizontalAnchor anchor);
/// Whether they share more than an edge.
bool intersect(const CapsuleFrame& first, const CapsuleFrame& second);
/// Moved as far as necessary to lie inside.
CapsuleFrame clamped(const CapsuleFrame& frame, const CapsuleFrame& visibleFrame);
/// Fitted, anchored and clamped: where the capsule lies on a screen.
CapsuleFrame placedFrame(const StablePosition& position, const CapsuleLayout& layout,
                         const CapsuleFrame& visibleFrame);
StablePosition stablePosition(const CapsuleFrame& frame, HorizontalAnchor anchor,
                              std::optional<std::uint32_t> displayID);
/// The circle's place at the top centre of the visible frame, below the layout's margin: the same in every
/// layout.
StablePosition defaultPosition(const CapsuleLayout& layout, const CapsuleScreen& screen);
/// Equal up to 0.75 points in every number; how places are to be compared, which only tests do.
bool framesApproximatelyEqual(const CapsuleFrame& first, const CapsuleFrame& second);

/// The position moved flush to the nearer side edge, if the frame lies near one.
StablePosition snapped(const StablePosition& position, const CapsuleFrame& frame,
                       const CapsuleFrame& visibleFrame);
/// leading or trailing: the end to hold when the circle grows to this width.
HorizontalAnchor preferredExpansionAnchor(const StablePosition& position, double width,
                                          double horizontalMargin, const CapsuleFrame& visibleFrame);

/// The screen with this number; none for an absent number or one that is not attached.
const CapsuleScreen* screenWithDisplayID(const std::vector<CapsuleScreen>& screens,
                                         std::optional<std::uint32_t> displayID);
/// The first screen whose whole frame contains the point.
const CapsuleScreen* screenContaining(const std::vector<CapsuleScreen>& screens, CapsulePoint point);

/// The record of a position on this screen.
SavedPosition savedPosition(const StablePosition& position, const CapsuleScreen& screen);
/// The position that a record of any readable version tells, on its own display or, where that is gone, on
/// the fallback.
StablePosition restoredPosition(const SavedPosition& saved, const CapsuleLayout& layout,
                                const std::vector<CapsuleScreen>& screens, const CapsuleScreen& fallback);

} // namespace CapsuleGeometry

} // namespace brevlin
