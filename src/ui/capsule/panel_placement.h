#pragma once

#include "platform/banner_place.h"
#include "ui/capsule/panel_geometry.h"

#include <optional>
#include <vector>

namespace brevlin {

/// The attached screens. Their display numbers are there and differ.
struct PanelScreens
{
    std::vector<PanelScreen> all;
    std::size_t main = 0; ///< index of the screen that the desktop calls its primary one
};

/// Where the capsule is pinned, through every layout, drag and change of the screens. The place survives
/// restarts.
class PanelPlacement final
{
public:
    explicit PanelPlacement(TopPanelPositionStore& store);

    void setScreens(PanelScreens screens);

    /// The capsule's frame in this layout: where it is pinned, else where it was left, else at the top
    /// centre. None without a screen.
    std::optional<PanelFrame> place(const CapsuleLayout& layout);
    /// Where the desktop shows its banners; nothing where they are in nobody's way.
    void setBannerPlace(std::optional<BannerPlace> place) { m_bannerPlace = place; }
    /// Whether the island would stand where these banners are shown.
    bool meetsIsland(const BannerPlace& place);

    /// The end (leading or trailing) that has to stay when the circle grows to this width.
    HorizontalAnchor preferredExpansionAnchor(double width) const;

    bool isDragging() const { return m_drag.has_value(); }
    /// The user takes hold of the capsule where it lies now.
    void beginDrag(const PanelFrame& frame);
    /// The capsule follows the pointer, by this much since the drag began; its frame.
    PanelFrame dragBy(double x, double y);
    /// The user lets go: snaps the capsule to a side edge nearby, remembers the place and gives the frame
    /// where the capsule belongs now.
    std::optional<PanelFrame> finishDrag();

private:
    struct Drag
    {
        PanelFrame start;
        StablePosition startPosition;
        PanelFrame frame;
    };

    const PanelScreen* resolvedScreen();
    const PanelScreen* stableScreen() const;
    PanelFrame clearOfBanners(const PanelFrame& island, const PanelScreen& screen) const;

    TopPanelPositionStore& m_store;
    PanelScreens m_screens;
    CapsuleLayout m_layout;
    std::optional<StablePosition> m_stablePosition;
    std::optional<std::uint32_t> m_preferredDisplay; // where the capsule was placed or dragged to
    std::optional<Drag> m_drag;
    std::optional<BannerPlace> m_bannerPlace;
    bool m_isAtDefaultPlace = false;
};

} // namespace brevlin
