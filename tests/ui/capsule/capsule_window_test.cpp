#include "support/plain_desktop.h"
#include "ui/capsule/capsule_window.h"

#include <QApplication>
#include <QEnterEvent>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QWindow>

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>

namespace brevlin {
namespace {

/// An X server of a Wayland session.
class UncertainSystem final : public test::NoPanels
{
public:
    PointerSight pointerSight() const override { return PointerSight::uncertain; }
    bool isComposited() const override { return true; }
    void setShape(WindowId /*window*/, const Shape& shape) override
    {
        steps += shape.clicked && shape.clicked->size() == 1 ? "open " : "cut ";
        opened = shape.clicked->front();
    }
    void prepareResize(WindowId /*window*/, const Rectangle& /*from*/, const Rectangle& /*to*/) override
    {
        steps += "resize ";
    }

    std::string steps;
    Rectangle opened;
};

class CapsuleWindowTest : public ::testing::Test
{
protected:
    CapsuleWindowTest() { m_window.appear(circle, 25); }

    void enter(const QPoint& place)
    {
        QEnterEvent event(place - m_window.pos(), place - m_window.pos(), place);
        QCoreApplication::sendEvent(&m_window, &event);
    }
    void move(const QPoint& place)
    {
        QMouseEvent event(QEvent::MouseMove, place - m_window.pos(), place, Qt::NoButton, Qt::NoButton, {});
        QCoreApplication::sendEvent(m_window.windowHandle(), &event);
    }
    std::optional<bool> hovered()
    {
        return m_hovered.isEmpty() ? std::nullopt : std::optional{m_hovered.takeLast().front().toBool()};
    }
    std::string stepsOf(const std::function<void()>& act)
    {
        m_system.steps.clear();
        act();
        return m_system.steps;
    }

    static constexpr QRect circle{300, 100, 50, 50};
    UncertainSystem m_system;
    CapsuleWindow m_window{m_system};
    QSignalSpy m_hovered{&m_window, &CapsuleWindow::hovered};
    QSignalSpy m_moved{&m_window, &CapsuleWindow::pointerMoved};
};

TEST_F(CapsuleWindowTest, what_moves_in_the_margin_has_left_and_the_margin_goes)
{
    enter(circle.center());
    EXPECT_TRUE(m_window.hasPointer());
    const QRect sensing = m_window.geometry();
    EXPECT_TRUE(sensing.contains(circle.adjusted(-50, -50, 50, 50)));
    EXPECT_EQ(m_system.opened, (FloatingWindowSystem::Rectangle{0, 0, sensing.width(), sensing.height()}));
    EXPECT_EQ(m_window.frame(), circle);

    move(circle.center() + QPoint(10, 0));
    EXPECT_TRUE(m_window.hasPointer());
    move(circle.center() + QPoint(0, 40));
    EXPECT_FALSE(m_window.hasPointer());
    EXPECT_EQ(m_window.geometry(), circle);
    EXPECT_EQ(hovered(), false);
    // Its corner is no part of it either, wherever the server says that the pointer came in.
    enter(circle.topLeft());
    EXPECT_FALSE(m_window.hasPointer());
    move(circle.center());
    EXPECT_EQ(hovered(), true);
}

TEST_F(CapsuleWindowTest, no_shape_under_the_pointer_moves_while_the_margin_comes_and_goes)
{
    EXPECT_EQ(stepsOf([this] { enter(circle.center()); }), "open resize open ");
    EXPECT_EQ(m_moved.count(), 1) << "a pointer that is lost at once is given up, too";
    EXPECT_EQ(stepsOf([this] { m_window.losePointer(); }), "resize cut ");
    EXPECT_FALSE(m_window.hasPointer());
}

TEST_F(CapsuleWindowTest, a_capsule_in_the_hand_keeps_the_pointer_that_runs_ahead)
{
    enter(circle.center());
    const QPoint held = circle.center() - m_window.pos();
    QMouseEvent press(QEvent::MouseButtonPress, held, circle.center(), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&m_window, &press);
    move(circle.center() + QPoint(45, 0));
    EXPECT_TRUE(m_window.hasPointer());
}

} // namespace
} // namespace brevlin
