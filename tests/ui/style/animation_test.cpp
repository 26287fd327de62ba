#include "ui/style/animation.h"

#include <QWidget>

#include <gtest/gtest.h>

#include <vector>

namespace brevlin {
namespace {

using namespace std::chrono_literals;

class ValueAnimationTest : public testing::Test
{
protected:
    ValueAnimationTest()
    {
        widget.setAttribute(Qt::WA_DontShowOnScreen);
        widget.show();
        QObject::connect(&animation, &ValueAnimation::valueChanged, &widget,
                         [this](double value) { values.push_back(value); });
    }

    QWidget widget;
    std::vector<double> values;
    ValueAnimation animation{widget};
};

TEST_F(ValueAnimationTest, moves_in_even_steps_and_ends_on_the_target)
{
    animation.animateTo(10, {100ms, QEasingCurve::Linear, 4});
    for (const auto elapsed : {0ms, 25ms, 26ms, 50ms, 75ms, 100ms, 125ms})
        animation.advanceTo(elapsed);
    EXPECT_EQ(values, (std::vector<double>{2.5, 5, 7.5, 10}));
    EXPECT_FALSE(animation.isRunning());
}

TEST_F(ValueAnimationTest, a_new_target_starts_from_where_it_stands)
{
    animation.animateTo(10, {100ms, QEasingCurve::Linear, 4});
    animation.advanceTo(50ms);
    animation.animateTo(0, {100ms, QEasingCurve::Linear, 2});
    animation.advanceTo(50ms);
    EXPECT_EQ(values, (std::vector<double>{5, 2.5}));
}

TEST_F(ValueAnimationTest, a_late_wake_up_and_hiding_the_widget_end_it)
{
    animation.animateTo(1, {100ms, QEasingCurve::OutQuad, 8});
    animation.advanceTo(3s);
    EXPECT_EQ(values, (std::vector<double>{1}));
    EXPECT_FALSE(animation.isRunning());
    animation.animateTo(2, {100ms, QEasingCurve::OutQuad, 8});
    widget.hide();
    EXPECT_EQ(animation.value(), 2);
    EXPECT_FALSE(animation.isRunning());
    animation.animateTo(3, {100ms, QEasingCurve::OutQuad, 8});
    EXPECT_FALSE(animation.isRunning()) << "nobody would see it";
}

} // namespace
} // namespace brevlin
