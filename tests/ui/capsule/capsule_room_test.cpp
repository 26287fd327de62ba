#include "support/fake_layers.h"
#include "ui/capsule/capsule_geometry.h"
#include "ui/capsule/capsule_room.h"
#include "ui/capsule/capsule_screens.h"

#include <QApplication>
#include <QGraphicsOpacityEffect>
#include <QWidget>
#include <QWindow>

#include <gtest/gtest.h>

namespace brevlin {
namespace {

constexpr QRect screen(0, 0, 1280, 900);

TEST(CapsuleRoom, holds_whatever_the_circle_in_it_grows_into)
{
    using namespace CapsuleLayouts;
    const CapsuleFrame visible = fromQt(screen, screen);
    for (const StablePosition position :
         {StablePosition{7, 640, 892}, StablePosition{7, 25, 500}, StablePosition{7, 1255, 892},
          StablePosition{7, 200, 60}, StablePosition{7, 1000, 50}}) {
        const auto frame = [&](const CapsuleLayout& layout) {
            return toQt(CapsuleGeometry::placedFrame(position, layout, visible), screen);
        };
        const QRect circle = frame(capsule(circleDiameter, HorizontalAnchor::center));
        const QRect room = roomAround(circle, screen);
        EXPECT_TRUE(screen.contains(room));
        const auto anchor =
            CapsuleGeometry::preferredExpansionAnchor(position, soundingTimerWidth, 12, visible);
        for (const CapsuleLayout& layout :
             {capsule(expandedTimerWidth, anchor), capsule(soundingTimerWidth, anchor), island}) {
            EXPECT_TRUE(room.contains(frame(layout)))
                << position.compactCenterX << " " << position.topY << " " << layout.width;
        }
    }
}

class CapsuleRoomTest : public ::testing::Test
{
protected:
    CapsuleRoomTest()
    {
        m_view.setGeometry(0, 0, 50, 50);
        m_room.prepare();
        hold({300, 8, 50, 50});
        m_room.show();
    }

    void hold(const QRect& area)
    {
        m_room.hold(area);
        m_view.setGeometry(area.translated(-m_room.area().topLeft()));
    }
    WId id() const { return m_window.winId(); }
    QRect placed(WId window) const
    {
        const auto area = m_layers.areas.at(window);
        return {area.x, area.y, area.width, area.height};
    }
    /// The other window that was adopted.
    WId ghost() const
    {
        for (const auto& [window, kind] : m_layers.kinds) {
            if (window != id()) {
                return window;
            }
        }
        return 0;
    }
    double opacity() const
    {
        const auto* effect = qobject_cast<const QGraphicsOpacityEffect*>(m_view.graphicsEffect());
        return effect != nullptr ? effect->opacity() : 1.0;
    }

    test::FakeLayers m_layers;
    QWidget m_window;
    QWidget m_view{&m_window};
    CapsuleRoom m_room{m_window, m_view, m_layers};
};

TEST_F(CapsuleRoomTest, lies_still_in_somebodys_hand_while_a_ghost_follows_and_goes_where_it_is_dropped)
{
    const int before = m_layers.placings[id()];
    m_room.lift();
    for (int step = 0; step < 5; ++step) {
        m_room.moveBy({60, 40});
        QApplication::processEvents();
    }
    EXPECT_EQ(m_layers.placings[id()], before);
    EXPECT_EQ(placed(ghost()), QRect(600, 208, 50, 50));
    EXPECT_EQ(opacity(), 0.0);

    m_room.setOpacity(0.5); // as a fade does that is under way
    EXPECT_EQ(opacity(), 0.0);
    m_room.drop();
    EXPECT_EQ(opacity(), 0.5);
    EXPECT_EQ(m_layers.placings[id()], before + 1);
    EXPECT_EQ(m_view.geometry().translated(placed(id()).topLeft()), QRect(600, 208, 50, 50));
}

TEST_F(CapsuleRoomTest, is_placed_anew_when_its_screen_has_gone_and_shown_anew_on_another_one)
{
    EXPECT_FALSE(m_room.hold({320, 8, 50, 50}));
    m_layers.lost = id();
    EXPECT_TRUE(m_room.isLost());
    const int before = m_layers.placings[id()];
    EXPECT_TRUE(m_room.hold({320, 8, 50, 50}));
    EXPECT_EQ(m_layers.placings[id()], before + 1);

    m_layers.hasToBeShownAnew = true;
    hold({1100, 600, 50, 50});
    EXPECT_TRUE(m_window.isVisible());
    EXPECT_EQ(m_layers.placings[id()], before + 3);
    EXPECT_TRUE(placed(id()).contains(QRect(1100, 600, 50, 50)));
}

} // namespace
} // namespace brevlin
