#include "ui/capsule/capsule_geometry.h"

#include <gtest/gtest.h>

#include <ostream>
#include <tuple>

namespace brevlin {

void PrintTo(const CapsuleFrame& frame, std::ostream* stream)
{
    *stream << '(' << frame.x << ", " << frame.y << ", " << frame.width << " x " << frame.height << ')';
}

void PrintTo(const StablePosition& position, std::ostream* stream)
{
    *stream << '(' << position.compactCenterX << ", " << position.topY << ')';
}

namespace {

using enum HorizontalAnchor;

const CapsuleScreen main{7, {0, 0, 1280, 900}, {0, 30, 1280, 840}};
const CapsuleScreen left{9, {-1024, 100, 1024, 768}, {-1024, 100, 1024, 768}};
const CapsuleScreen tiny{11, {1280, 0, 320, 200}, {1290, 0, 300, 180}};
const std::vector<CapsuleScreen> screens{main, left, tiny};

constexpr CapsuleLayout circle{50, 50, center, 25};
constexpr CapsuleLayout island{460, 126, center, 30};

CapsuleLayout expanded(HorizontalAnchor anchor)
{
    return {316, 50, anchor, 25};
}

TEST(CapsuleGeometry, the_circle_stays_where_it_is_in_every_layout_unless_a_part_left_the_visible_frame)
{
    const StablePosition position{7, 600, 800};
    struct Case
    {
        StablePosition position;
        CapsuleLayout layout;
        CapsuleFrame visible;
        CapsuleFrame frame;
    };
    const Case cases[] = {
        {position, circle, main.visibleFrame, {575, 750, 50, 50}},
        {position, expanded(leading), main.visibleFrame, {575, 750, 316, 50}},
        {position, expanded(trailing), main.visibleFrame, {309, 750, 316, 50}},
        {position, expanded(center), main.visibleFrame, {442, 750, 316, 50}},
        {position, island, main.visibleFrame, {370, 674, 460, 126}},
        {{7, 25, 870}, island, main.visibleFrame, {0, 744, 460, 126}},
        {{7, 1255, 2000}, island, main.visibleFrame, {820, 744, 460, 126}},
        {{7, 640, -50}, circle, main.visibleFrame, {615, 30, 50, 50}},
        {{9, -2000, 868}, expanded(leading), left.visibleFrame, {-1024, 818, 316, 50}},
        // An island that the screen has no room for shrinks to what is left between the margins.
        {{11, 1440, 180}, island, tiny.visibleFrame, {1302, 54, 276, 126}},
        {{11, 1440, 180}, island, {1290, 0, 20, 100}, {1309, 0, 1, 100}},
    };
    for (const Case& c : cases) {
        const CapsuleFrame frame = CapsuleGeometry::placedFrame(c.position, c.layout, c.visible);
        EXPECT_EQ(frame, c.frame);
        if (c.position == position) {
            EXPECT_EQ(CapsuleGeometry::stablePosition(frame, c.layout.horizontalAnchor, 7), position);
        }
    }
}

TEST(CapsuleGeometry, the_capsule_grows_to_where_there_is_room)
{
    for (const auto& [centerX, width, anchor] : {std::tuple{640.0, 316.0, leading},
                                                 {641.0, 316.0, trailing},
                                                 {640.0, 1270.0, leading},
                                                 {700.0, 1270.0, trailing}}) {
        const StablePosition position{7, centerX, 800};
        EXPECT_EQ(CapsuleGeometry::preferredExpansionAnchor(position, width, 12, main.visibleFrame), anchor)
            << centerX << " " << width;
    }
}

TEST(CapsuleGeometry, every_readable_record_returns_to_its_place)
{
    const std::pair<SavedPosition, StablePosition> cases[] = {
        {{9, 0.5, 1.0, 5, center}, {9, -512, 868}},
        {{404, 0.5, 1.0, 5, center}, {7, 640, 870}},           // its display is gone
        {{std::nullopt, 2.0, -1.0, 5, center}, {7, 1280, 30}}, // fractions beyond the frame
        {{7, 0.5, 0.5, 4, std::nullopt}, {7, 640, 450}},
        {{7, 0.5, 0.5, 4, leading}, {7, 665, 450}},
        {{7, 0.5, 0.5, 4, trailing}, {7, 615, 450}},
        {{7, 0.5, 0.5, 3, std::nullopt}, {7, 640, 450}},
        {{7, 0.5, 0.5, 2, std::nullopt}, {7, 640, 475}},
        {{7, 0.0, 1.0, std::nullopt, std::nullopt}, {7, 25, 870}},
        {{7, 1.0, 0.0, 99, std::nullopt}, {7, 1255, 80}},
    };
    for (const auto& [saved, restored] : cases) {
        EXPECT_EQ(CapsuleGeometry::restoredPosition(saved, circle, screens, main), restored)
            << saved.version.value_or(0);
    }
    const StablePosition position{9, -300, 500};
    const SavedPosition saved = CapsuleGeometry::savedPosition(position, left);
    EXPECT_EQ(saved.version, 5);
    EXPECT_EQ(CapsuleGeometry::restoredPosition(saved, circle, screens, main), position);
}

} // namespace
} // namespace brevlin
