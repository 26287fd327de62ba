#pragma once

#include "platform/banner_place.h"
#include "ui/capsule/capsule_geometry.h"

#include <optional>
#include <vector>

namespace brevlin {

/// The attached screens. Their display numbers are there and differ.
struct CapsuleScreens
{
    std::vector<CapsuleScreen> all;
    std::size_t main = 0; ///< index of the screen that the desktop calls its primary one
};

/// Where the capsule is pinned, through every layout, drag and change of the screens. The place survives
/// restarts.
class CapsulePlacement final
{
public:
    explicit CapsulePlacement(CapsulePositionStore& store);

    void setScreens(CapsuleScreens screens);

    /// The capsule's frame in this layout: where it is pinned, else where it was left, else at the top
    /// centre. None without a screen.
    std::optional<CapsuleFrame> place(const CapsuleLayout& layout);
    /// Where the desktop shows its banners; nothing where they are in nobody's way.
    void setBannerPlace(std::optional<BannerPlace> place) { m_bannerPlace = place; }
    /// Whether the island would stand where these banners are shown.
    bool meetsIsland(const BannerPlace& place);

    /// The end (leading or trailing) that has to stay when the circle grows to this width.
    HorizontalAnchor preferredExpansionAnchor(double width) const;

    /// Where the circle lies in its screen's work area; none without a screen.
    std::optional<CapsulePlace> circlePlace();
    /// As if the user dragged the circle there and let go; the frame where the capsule belongs then.
    std::optional<CapsuleFrame> moveCircleTo(const CapsulePlace& place);

    bool isDragging() const { return m_drag.has_value(); }
    /// The user takes hold of the capsule where it lies now.
    void beginDrag(const CapsuleFrame& frame);
    /// The capsule follows the pointer, by this much since the drag began; its frame.
    CapsuleFrame dragBy(double x, double y);
    /// The user lets go: snaps the capsule to a side edge nearby, remembers the place and gives the frame
    /// where the capsule belongs now.
    std::optional<CapsuleFrame> finishDrag();

private:
    struct Drag
    {
        CapsuleFrame start;
        StablePosition startPosition;
        CapsuleFrame frame;
    };

    std::optional<CapsuleFrame> circle();
    CapsuleFrame wantedCircle(const CapsulePlace& place, const CapsuleFrame& circle,
                              const CapsuleScreen& screen) const;
    const CapsuleScreen* resolvedScreen();
    const CapsuleScreen* stableScreen() const;
    CapsuleFrame clearOfBanners(const CapsuleFrame& island, const CapsuleScreen& screen) const;

    CapsulePositionStore& m_store;
    CapsuleScreens m_screens;
    CapsuleLayout m_layout;
    std::optional<StablePosition> m_stablePosition;
    std::optional<std::uint32_t> m_preferredDisplay; // where the capsule was placed or dragged to
    std::optional<Drag> m_drag;
    std::optional<BannerPlace> m_bannerPlace;
    bool m_isAtDefaultPlace = false;
};

} // namespace brevlin
