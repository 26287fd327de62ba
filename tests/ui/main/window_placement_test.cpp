#include "ui/main/window_placement.h"

#include <gtest/gtest.h>

#include <ostream>

namespace brevlin {
namespace {

constexpr QSize least{800, 570};
// A laptop's screen below a bar, and a larger one to its right.
const std::vector<QRect> areas{QRect(0, 30, 1366, 738), QRect(1366, 0, 1920, 1080)};

TEST(WindowPlacement, the_window_lies_wholly_on_a_work_area)
{
    struct Case
    {
        const char* name;
        WindowGeometry wanted;
        std::vector<QRect> areas;
        QRect expected;
    };
    const Case cases[] = {
        {"nobody has moved it", {std::nullopt, 920, 650}, areas, {223, 74, 920, 650}},
        {"moved", {WindowPlace{100, 60}, 920, 650}, areas, {100, 60, 920, 650}},
        {"on the second screen", {WindowPlace{1400, 20}, 920, 1000}, areas, {1400, 20, 920, 1000}},
        {"beyond the edges", {WindowPlace{-300, 400}, 920, 650}, areas, {0, 118, 920, 650}},
        {"between two screens", {WindowPlace{1300, 100}, 920, 650}, areas, {1366, 100, 920, 650}},
        {"on a screen that is gone", {WindowPlace{5000, 100}, 920, 650}, areas, {223, 74, 920, 650}},
        {"larger than every screen", {WindowPlace{0, 0}, 100'000, 100'000}, areas, areas[1]},
        {"smaller than it may be", {WindowPlace{10, 40}, 1, 1}, areas, {10, 40, 800, 570}},
        {"a small screen", {std::nullopt, 920, 650}, {QRect(0, 28, 1024, 544)}, {52, 28, 920, 544}},
        {"a screen below the least", {std::nullopt, 920, 650}, {QRect(0, 0, 640, 480)}, {0, 0, 640, 480}},
        {"no screen", {std::nullopt, 920, 650}, {}, {0, 0, 920, 650}},
    };
    for (const Case& test : cases) {
        const QRect rect = placedInside(test.wanted, leastSizeOn(test.areas, least), test.areas);
        EXPECT_TRUE(rect == test.expected) << test.name << ": " << rect.x() << ", " << rect.y() << ", "
                                           << rect.width() << " x " << rect.height();
    }
}

TEST(WindowPlacement, a_centred_window_counts_as_one_that_nobody_has_moved)
{
    const QRect centred = placedInside({std::nullopt, 920, 650}, least, areas);
    EXPECT_FALSE(placeToRemember(centred.translated(2, -1), areas));
    EXPECT_EQ(placeToRemember(centred.translated(0, 20), areas), (WindowPlace{223, 94}));
    EXPECT_EQ(placeToRemember(centred.adjusted(0, 0, 40, 0), areas), (WindowPlace{223, 74})) << "resized";
    EXPECT_EQ(placeToRemember(centred, {}), (WindowPlace{223, 74})) << "without a screen";
}

} // namespace
} // namespace brevlin
