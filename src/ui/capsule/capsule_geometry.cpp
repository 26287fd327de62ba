#include "ui/capsule/capsule_geometry.h"

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

double fraction(double value)
{
    return value > 0.0 ? std::min(value, 1.0) : 0.0;
}

double share(double part, double whole)
{
    return whole > 0.0 ? fraction(part / whole) : 0.0;
}

// Records of earlier releases tell the capsule's place by other points; each gives its lower left corner.
CapsulePoint restoredOrigin(const SavedPosition& saved, CapsuleSize size, const CapsuleFrame& visible)
{
    const double x = fraction(saved.xFraction);
    const double y = fraction(saved.yFraction);
    const double anchorX = visible.x + x * visible.width;
    const double anchorY = visible.y + y * visible.height;
    switch (saved.version.value_or(0)) {
    case 2: // the centre
        return {anchorX - size.width / 2, anchorY - size.height / 2};
    case 3: // the top centre
        return {anchorX - size.width / 2, anchorY - size.height};
    case 4: // the top of the stored anchor
        switch (saved.horizontalAnchor.value_or(HorizontalAnchor::center)) {
        case HorizontalAnchor::center:
            return {anchorX - size.width / 2, anchorY - size.height};
        case HorizontalAnchor::leading:
            return {anchorX, anchorY - size.height};
        case HorizontalAnchor::trailing:
            return {anchorX - size.width, anchorY - size.height};
        }
        break;
    default:
        break;
    }
    // The oldest records: fractions of the free way.
    return {visible.x + x * std::max(visible.width - size.width, 0.0),
            visible.y + y * std::max(visible.height - size.height, 0.0)};
}

} // namespace

CapsuleSize CapsuleGeometry::fittedSize(const CapsuleLayout& layout, const CapsuleFrame& visibleFrame)
{
    return {std::min(layout.width, std::max(visibleFrame.width - 2 * layout.horizontalMargin, 1.0)),
            std::min(layout.height, std::max(visibleFrame.height, 1.0))};
}

CapsuleFrame CapsuleGeometry::frame(const StablePosition& position, CapsuleSize size, HorizontalAnchor anchor)
{
    double x = position.compactCenterX - size.width / 2;
    if (anchor == HorizontalAnchor::leading) {
        x = position.compactCenterX - compactReferenceRadius;
    } else if (anchor == HorizontalAnchor::trailing) {
        x = position.compactCenterX + compactReferenceRadius - size.width;
    }
    return {x, position.topY - size.height, size.width, size.height};
}

CapsuleFrame CapsuleGeometry::clamped(const CapsuleFrame& frame, const CapsuleFrame& visibleFrame)
{
    const auto within = [](double value, double low, double high) {
        return std::min(std::max(value, low), std::max(high, low));
    };
    return {within(frame.x, visibleFrame.x, visibleFrame.maxX() - frame.width),
            within(frame.y, visibleFrame.y, visibleFrame.maxY() - frame.height), frame.width, frame.height};
}

CapsuleFrame CapsuleGeometry::placedFrame(const StablePosition& position, const CapsuleLayout& layout,
                                          const CapsuleFrame& visibleFrame)
{
    return clamped(frame(position, fittedSize(layout, visibleFrame), layout.horizontalAnchor), visibleFrame);
}

StablePosition CapsuleGeometry::stablePosition(const CapsuleFrame& frame, HorizontalAnchor anchor,
                                               std::optional<std::uint32_t> displayID)
{
    double centerX = frame.midX();
    if (anchor == HorizontalAnchor::leading) {
        centerX = frame.x + compactReferenceRadius;
    } else if (anchor == HorizontalAnchor::trailing) {
        centerX = frame.maxX() - compactReferenceRadius;
    }
    return {displayID, centerX, frame.maxY()};
}

StablePosition CapsuleGeometry::defaultPosition(const CapsuleLayout& layout, const CapsuleScreen& screen)
{
    const CapsuleFrame& visible = screen.visibleFrame;
    const CapsuleSize size = fittedSize(layout, visible);
    const CapsuleFrame placed =
        clamped({visible.midX() - size.width / 2, visible.maxY() - size.height - layout.topMargin, size.width,
                 size.height},
                visible);
    return stablePosition(placed, HorizontalAnchor::center, screen.displayID);
}

bool CapsuleGeometry::intersect(const CapsuleFrame& first, const CapsuleFrame& second)
{
    return first.x < second.maxX() && second.x < first.maxX() && first.y < second.maxY() &&
           second.y < first.maxY();
}

bool CapsuleGeometry::framesApproximatelyEqual(const CapsuleFrame& first, const CapsuleFrame& second)
{
    constexpr double tolerance = 0.75;
    const auto near = [](double a, double b) {
        return std::abs(a - b) <= tolerance;
    };
    return near(first.x, second.x) && near(first.y, second.y) && near(first.width, second.width) &&
           near(first.height, second.height);
}

StablePosition CapsuleGeometry::snapped(const StablePosition& position, const CapsuleFrame& frame,
                                        const CapsuleFrame& visibleFrame)
{
    const double leftGap = frame.x - visibleFrame.x;
    const double rightGap = visibleFrame.maxX() - frame.maxX();
    StablePosition result = position;
    if (std::min(leftGap, rightGap) <= snapDistance) {
        result.compactCenterX = leftGap <= rightGap ? visibleFrame.x + compactReferenceRadius
                                                    : visibleFrame.maxX() - compactReferenceRadius;
    }
    return result;
}

HorizontalAnchor CapsuleGeometry::preferredExpansionAnchor(const StablePosition& position, double width,
                                                           double horizontalMargin,
                                                           const CapsuleFrame& visibleFrame)
{
    const double left = position.compactCenterX - compactReferenceRadius;
    const double right = position.compactCenterX + compactReferenceRadius;
    if (left - visibleFrame.x <= snapDistance) {
        return HorizontalAnchor::leading;
    }
    if (visibleFrame.maxX() - right <= snapDistance) {
        return HorizontalAnchor::trailing;
    }
    const bool fitsRight = left + width <= visibleFrame.maxX() - horizontalMargin;
    const bool fitsLeft = visibleFrame.x + horizontalMargin <= right - width;
    bool growsLeft = fitsLeft;
    if (fitsRight == fitsLeft) {
        growsLeft = fitsRight ? position.compactCenterX > visibleFrame.midX()
                              : right - visibleFrame.x > visibleFrame.maxX() - left;
    }
    return growsLeft ? HorizontalAnchor::trailing : HorizontalAnchor::leading;
}

const CapsuleScreen* CapsuleGeometry::screenWithDisplayID(const std::vector<CapsuleScreen>& screens,
                                                          std::optional<std::uint32_t> displayID)
{
    const auto found = std::find_if(screens.begin(), screens.end(), [&](const CapsuleScreen& screen) {
        return displayID && screen.displayID == displayID;
    });
    return found != screens.end() ? &*found : nullptr;
}

const CapsuleScreen* CapsuleGeometry::screenContaining(const std::vector<CapsuleScreen>& screens,
                                                       CapsulePoint point)
{
    const auto found = std::find_if(screens.begin(), screens.end(), [&](const CapsuleScreen& screen) {
        return screen.frame.contains(point);
    });
    return found != screens.end() ? &*found : nullptr;
}

SavedPosition CapsuleGeometry::savedPosition(const StablePosition& position, const CapsuleScreen& screen)
{
    const CapsuleFrame& visible = screen.visibleFrame;
    return {screen.displayID, share(position.compactCenterX - visible.x, visible.width),
            share(position.topY - visible.y, visible.height), SavedPosition::currentVersion,
            HorizontalAnchor::center};
}

StablePosition CapsuleGeometry::restoredPosition(const SavedPosition& saved, const CapsuleLayout& layout,
                                                 const std::vector<CapsuleScreen>& screens,
                                                 const CapsuleScreen& fallback)
{
    const CapsuleScreen* own = screenWithDisplayID(screens, saved.displayID);
    const CapsuleScreen& screen = own != nullptr ? *own : fallback;
    const CapsuleFrame& visible = screen.visibleFrame;
    if (saved.version == SavedPosition::currentVersion) {
        return {screen.displayID, visible.x + fraction(saved.xFraction) * visible.width,
                visible.y + fraction(saved.yFraction) * visible.height};
    }
    const CapsuleSize size = fittedSize(layout, visible);
    const CapsulePoint origin = restoredOrigin(saved, size, visible);
    const CapsuleFrame placed = clamped({origin.x, origin.y, size.width, size.height}, visible);
    return stablePosition(placed, layout.horizontalAnchor, screen.displayID);
}

} // namespace brevlin
