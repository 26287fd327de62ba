#include "support/fake_disk.h"
#include "ui/capsule/capsule_placement.h"
#include "ui/capsule/capsule_screens.h"
#include "ui/capsule/capsule_shape.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

using Edge = FloatingWindowSystem::Edge;

constexpr auto circle = CapsuleLayouts::capsule(50, HorizontalAnchor::center);

const CapsuleScreen left{7, {0, 0, 1280, 900}, {0, 30, 1280, 840}};
const CapsuleScreen right{9, {1280, 100, 1024, 768}, {1280, 100, 1024, 768}};

struct Placed
{
    test::FakeDisk disk;
    CapsulePositionStore store{disk};
    CapsulePlacement placement{store};

    Placed() { placement.setScreens({{left, right}, 0}); }

    std::optional<CapsuleFrame> drag(double x, double y)
    {
        placement.beginDrag(*placement.place(circle));
        placement.dragBy(x / 2, y / 2);
        placement.dragBy(x, y);
        return placement.finishDrag();
    }
};

TEST(CapsulePlacement, a_place_nobody_chose_follows_the_desktops_panels)
{
    Placed placed;
    EXPECT_EQ(placed.placement.place(circle), (CapsuleFrame{615, 812, 50, 50}));
    CapsuleScreen withPanel = left;
    withPanel.visibleFrame.height -= 40;
    placed.placement.setScreens({{withPanel}, 0});
    EXPECT_EQ(placed.placement.place(circle), (CapsuleFrame{615, 772, 50, 50}));
    // A chosen one stays where it is.
    EXPECT_EQ(placed.drag(0, -100), (CapsuleFrame{615, 672, 50, 50}));
    placed.placement.setScreens({{left}, 0});
    EXPECT_EQ(placed.placement.place(circle), (CapsuleFrame{615, 672, 50, 50}));
}

TEST(CapsulePlacement, without_a_pointer_it_moves_by_shares_and_as_by_a_drag)
{
    Placed placed;
    placed.placement.place(CapsuleLayouts::island); // which moves as its circle does
    for (const auto& [wanted, frame] : {std::pair{CapsulePlace{0.5, 0.5}, CapsuleFrame{615, 425, 50, 50}},
                                        {{0.01, 0.0}, {0, 820, 50, 50}},     // snaps
                                        {{0.01, 0.0}, {51, 820, 50, 50}},    // and gets away again
                                        {{0.04, -0.01}, {0, 820, 50, 50}},   // no screen there
                                        {{1.01, 0.0}, {1280, 818, 50, 50}},  // but there
                                        {{0.5, 1.0}, {1767, 100, 50, 50}},   //
                                        {{-0.01, 1.0}, {1230, 100, 50, 50}}, // and back
                                        {{0.99, 1.01}, {1179, 30, 50, 50}}}) {
        placed.placement.moveCircleTo(wanted);
        EXPECT_EQ(placed.placement.place(circle), frame) << wanted.x << ", " << wanted.y;
    }
    const auto place = placed.placement.circlePlace();
    EXPECT_DOUBLE_EQ(place->x, 1179 / 1230.0);
    EXPECT_DOUBLE_EQ(place->y, 1);
    placed.placement.setScreens({});
    EXPECT_FALSE(placed.placement.circlePlace() || placed.placement.moveCircleTo({0, 0}));
}

TEST(CapsulePlacement, a_drag_snaps_to_a_near_edge_and_is_remembered)
{
    for (const auto& [x, y, frame, growing] :
         {std::tuple{-400.0, -300.0, CapsuleFrame{215, 512, 50, 50}, HorizontalAnchor::leading},
          {-565, 0, {0, 812, 50, 50}, HorizontalAnchor::leading},    // 50 from the edge
          {-564, 0, {51, 812, 50, 50}, HorizontalAnchor::leading},   // 51
          {564, 0, {1179, 812, 50, 50}, HorizontalAnchor::trailing}, // 51 from the other
          {565, 0, {1230, 812, 50, 50}, HorizontalAnchor::trailing}, // 50
          {590, 0, {1230, 812, 50, 50}, HorizontalAnchor::trailing},
          {-100, 5000, {515, 820, 50, 50}, HorizontalAnchor::leading}, // beyond every screen
          {680, -200, {1280, 612, 50, 50}, HorizontalAnchor::leading}, // an edge between screens
          {1000, -200, {1615, 612, 50, 50}, HorizontalAnchor::leading}}) {
        Placed placed;
        EXPECT_EQ(placed.drag(x, y), frame);
        EXPECT_EQ(placed.placement.preferredExpansionAnchor(316), growing);
        CapsulePlacement afterRestart(placed.store);
        afterRestart.setScreens({{left, right}, 0});
        const auto again = afterRestart.place(circle);
        ASSERT_TRUE(again);
        EXPECT_TRUE(CapsuleGeometry::framesApproximatelyEqual(*again, frame)) << again->x << ' ' << again->y;
    }
}

TEST(CapsulePlacement, a_capsule_whose_screen_goes_moves_to_the_same_fractions_of_another)
{
    Placed placed;
    placed.drag(1000, -200); // on the right screen: 360 / 1024 and 562 / 768 of it
    placed.placement.setScreens({{left}, 0});
    const auto moved = placed.placement.place(circle);
    ASSERT_TRUE(moved);
    EXPECT_NEAR(moved->midX(), 1280 * 360.0 / 1024, 0.001);
    EXPECT_NEAR(moved->maxY(), 30 + 840 * 562.0 / 768, 0.001);
    placed.placement.setScreens({});
    EXPECT_EQ(placed.placement.place(circle), std::nullopt);
    EXPECT_EQ(placed.placement.preferredExpansionAnchor(316), HorizontalAnchor::leading);
}

TEST(CapsulePlacement, the_island_keeps_clear_of_the_desktops_banners)
{
    using enum BannerPlace::Position;
    const BannerPlace corner{topRight, 460, 130, false};
    struct Case
    {
        std::optional<BannerPlace> place;
        CapsulePoint moved; // from the top centre, by the user
        CapsuleFrame island;
    };
    // The left screen's work area ends at 870 and is 1280 wide.
    for (const Case& c : {Case{corner, {0, 0}, {410, 606, 460, 126}},
                          {corner, {-200, 0}, {210, 736, 460, 126}},
                          {corner, {0, -200}, {410, 536, 460, 126}},
                          {BannerPlace{topCentre, 520, 190, true}, {0, 0}, {410, 736, 460, 126}},
                          {std::nullopt, {0, 0}, {410, 736, 460, 126}}}) {
        Placed placed;
        placed.placement.setBannerPlace(c.place);
        if (c.moved != CapsulePoint{}) {
            placed.drag(c.moved.x, c.moved.y);
        }
        placed.placement.place(circle);
        EXPECT_EQ(placed.placement.place(CapsuleLayouts::island), c.island);
        const auto circleAgain = placed.placement.place(circle);
        EXPECT_EQ(circleAgain->y, 812 + c.moved.y) << "the circle stays";
    }
}

TEST(CapsulePlacement, banners_at_the_top_centre_meet_an_island_that_is_there)
{
    const BannerPlace place{BannerPlace::Position::topCentre, 520, 190, true};
    for (const auto& [moved, meets] : {std::pair{CapsulePoint{0, 0}, true},
                                       {CapsulePoint{-200, 0}, true},
                                       {CapsulePoint{0, -200}, false},
                                       {CapsulePoint{-600, 0}, true},
                                       {CapsulePoint{900, -100}, false}}) {
        Placed placed;
        placed.drag(moved.x, moved.y);
        EXPECT_EQ(placed.placement.meetsIsland(place), meets) << moved.x;
        EXPECT_EQ(placed.placement.place(circle)->width, 50);
    }
}

TEST(CapsulePlacement, an_opened_capsule_stays_where_it_is_when_the_screens_are_looked_at_again)
{
    Placed placed;
    placed.placement.place(circle);
    const auto opened = CapsuleLayouts::capsule(316, HorizontalAnchor::leading);
    const auto before = placed.placement.place(opened);
    placed.placement.setScreens({{left, right}, 0});
    EXPECT_EQ(placed.placement.place(opened), before);
    EXPECT_EQ(placed.placement.place(circle), (CapsuleFrame{615, 812, 50, 50}));
}

ScreenIdentity monitor(const char* serialNumber, const char* connector)
{
    return {QStringLiteral("Maker"), QStringLiteral("Model"), QString::fromLatin1(serialNumber),
            QString::fromLatin1(connector)};
}

TEST(CapsuleScreens, a_monitor_keeps_its_number_at_any_connector)
{
    const ScreenIdentity first = monitor("123", "DP-1");
    const ScreenIdentity second = monitor("124", "DP-2");
    const ScreenIdentity nameless = monitor("", "DP-3");
    const auto numbers = displayNumbers({first, second, nameless});
    EXPECT_EQ(displayNumbers({second, monitor("123", "DP-2")}), (std::vector{numbers[1], numbers[0]}));
    EXPECT_EQ(displayNumbers({monitor("", "DP-3")}), std::vector{numbers[2]});
    // Twins are told apart by where they are plugged in.
    const auto twins = displayNumbers({first, monitor("123", "DP-2")});
    EXPECT_NE(twins[0], twins[1]);
    EXPECT_EQ(numbers[0], 3885887966U) << "a number that changes loses everybody's places";
}

TEST(CapsuleScreens, the_desktops_panels_are_left_out_on_their_own_screen_only)
{
    const ScreenFacts upper{{}, {0, 0, 1000, 800}, {0, 0, 1000, 800}, 1};
    const ScreenFacts lower{{}, {0, 800, 1000, 800}, {0, 800, 1000, 800}, 1};
    const ScreenFacts sharp{{}, {0, 0, 1000, 800}, {0, 0, 1000, 800}, 2};
    struct Case
    {
        ScreenFacts screen;
        FloatingWindowSystem::ReservedArea area;
        QRect visible;
    };
    for (const Case& c : {Case{upper, {Edge::top, {0, 0, 1000, 30}}, {0, 30, 1000, 770}},
                          {lower, {Edge::top, {0, 0, 1000, 30}}, {0, 800, 1000, 800}},
                          // At the top of the lower screen, measured from the top of the desktop.
                          {lower, {Edge::top, {0, 0, 1000, 830}}, {0, 830, 1000, 770}},
                          {upper, {Edge::top, {0, 0, 1000, 830}}, {0, 0, 1000, 800}},
                          {lower, {Edge::bottom, {0, 1560, 1000, 40}}, {0, 800, 1000, 760}},
                          {upper, {Edge::left, {0, 0, 60, 800}}, {60, 0, 940, 800}},
                          {lower, {Edge::left, {0, 0, 60, 800}}, {0, 800, 1000, 800}},
                          {sharp, {Edge::right, {1940, 0, 60, 1600}}, {0, 0, 970, 800}}}) {
        EXPECT_EQ(visibleGeometry(c.screen, {c.area}), c.visible);
    }
}

TEST(CapsuleScreens, coordinates_turn_over_and_back)
{
    const QRect primary(0, 0, 1280, 900);
    EXPECT_EQ(fromQt({615, 8, 50, 50}, primary), (CapsuleFrame{615, 842, 50, 50}));
    for (const QRect& rect :
         {QRect{615, 8, 50, 50}, QRect{-400, -120, 316, 50}, QRect{2000, 1100, 460, 126}}) {
        EXPECT_EQ(toQt(fromQt(rect, primary), primary), rect);
    }
}

TEST(CapsuleShape, a_soft_edge_keeps_what_a_hard_one_cuts_and_both_spare_the_corners)
{
    for (const QSize& size : {QSize(50, 50), QSize(316, 50), QSize(460, 126)}) {
        const QRegion hard = roundedRegion(size, 30, ShapeEdge::hard);
        const QRegion soft = roundedRegion(size, 30, ShapeEdge::soft);
        EXPECT_EQ(soft.united(hard), soft);
        EXPECT_NE(soft, hard);
        EXPECT_EQ(soft.boundingRect(), QRect(QPoint(), size));
        EXPECT_EQ(hard.boundingRect(), QRect(QPoint(), size));
        EXPECT_FALSE(soft.contains(QPoint(1, 1)));
    }
}

} // namespace
} // namespace brevlin
