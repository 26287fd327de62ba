#include "ui/capsule/capsule_border.h"
#include "ui/capsule/capsule_pages.h"
#include "ui/capsule/capsule_shape.h"
#include "ui/capsule/top_capsule_view.h"
#include "ui/controls/brevlin_style.h"
#include "ui/style/contrast.h"
#include "ui/style/theme.h"

#include <QAbstractButton>
#include <QPointer>
#include <QTest>

#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <tuple>

namespace brevlin {
namespace {

TEST(CapsuleBorderProgress, starts_at_twelve_oclock_and_runs_clockwise)
{
    const QRectF circle(0, 0, 50, 50);
    const auto end = [&](double progress) {
        return capsuleBorderProgress(circle, progress).currentPosition();
    };
    for (const auto& [progress, x, y] :
         {std::tuple{0.25, 50, 25}, {0.5, 25, 50}, {0.75, 0, 25}, {1.0, 25, 0}, {7.0, 25, 0}}) {
        EXPECT_NEAR(end(progress).x(), x, 0.05) << progress;
        EXPECT_NEAR(end(progress).y(), y, 0.05) << progress;
    }
    const QPainterPath first = capsuleBorderProgress({0, 0, 316, 50}, 0.1);
    EXPECT_EQ(QPointF(first.elementAt(0)), QPointF(158, 0));
    EXPECT_GT(first.currentPosition().x(), 158) << "to the right first";
    for (const double nothing : {0.0, -1.0, std::nan("")}) {
        EXPECT_TRUE(capsuleBorderProgress(circle, nothing).isEmpty());
    }
    EXPECT_TRUE(capsuleBorderProgress({0, 0, 0, 50}, 0.5).isEmpty());
}

class TopCapsuleViewTest : public ::testing::Test
{
protected:
    TopCapsuleViewTest()
    {
        QObject::connect(&view, &TopCapsuleView::commanded, &view,
                         [this](CapsuleCommand command) { commands.push_back(command); });
        content.clockText = "25:00";
        content.language = AppLanguage::english;
        content.runState = TimerRunState::running;
    }

    std::map<std::string, QAbstractButton*> buttons() const
    {
        std::map<std::string, QAbstractButton*> byName;
        for (QAbstractButton* button : view.findChildren<QAbstractButton*>()) {
            if (!button->parentWidget()->isHidden()) {
                const QString name = button->text().isEmpty() ? button->accessibleName() : button->text();
                byName[name.toStdString()] = button;
            }
        }
        return byName;
    }
    std::vector<CapsuleCommand> pressAll()
    {
        commands.clear();
        for (const auto& [name, button] : buttons()) {
            button->click();
        }
        return commands;
    }

    TopCapsuleView view;
    CapsuleContent content;
    std::vector<CapsuleCommand> commands;
};

TEST_F(TopCapsuleViewTest, each_state_has_its_controls)
{
    using enum CapsuleCommand;
    using Commands = std::vector<CapsuleCommand>;
    view.setContent(content);
    EXPECT_TRUE(buttons().empty()) << "the circle has none";
    EXPECT_EQ(view.spokenText(), QStringLiteral("Focus, 25:00"));

    content.showsCompactTimer = false;
    content.revealsExpandedTimerContent = true;
    content.isAlertSoundPlaying = true;
    view.setContent(content);
    EXPECT_EQ(pressAll(), (Commands{addTime, end, primary, stopAlert, skip})); // in the order of their names
    content.runState = TimerRunState::paused;
    view.setContent(content);
    EXPECT_TRUE(buttons().contains("Resume"));

    content.runState = TimerRunState::ringing;
    content.phase = TimerPhase::longBreak;
    content.showsCompletion = true;
    view.setContent(content);
    EXPECT_EQ(pressAll(), (Commands{dismiss, minimize, skipPending, primary, stopAlert}));
    EXPECT_TRUE(buttons().contains("Start Long Break"));
    content.isAlertSoundPlaying = false;
    content.language = AppLanguage::simplifiedChinese;
    view.setContent(content);
    EXPECT_TRUE(buttons().contains("跳过长休息"));
    EXPECT_FALSE(buttons().contains("停止声音"));
    EXPECT_EQ(view.spokenText(), QStringLiteral("阶段完成提醒"));

    content.showsMinimizedCompletion = true;
    view.setContent(content);
    EXPECT_EQ(pressAll(), Commands{restore});
}

TEST_F(TopCapsuleViewTest, a_tick_keeps_the_controls_under_the_pointer)
{
    content.showsCompactTimer = false;
    content.revealsExpandedTimerContent = true;
    view.setContent(content);
    const auto before = buttons();
    content.clockText = "24:59";
    content.progress = 0.001;
    content.endTimeText = "14:05";
    view.setContent(content);
    EXPECT_EQ(buttons(), before);
    content.revealsExpandedTimerContent = false;
    view.setContent(content);
    EXPECT_TRUE(buttons().empty()) << "hidden while the capsule grows";
}

TEST(CapsuleColors, every_text_can_be_read_in_every_state_on_white_and_on_black)
{
    using enum CapsuleBackdrop;
    const auto expectLegible = [](const CapsuleButtonLook::Colors& button, const QColor& ground,
                                  const auto& where) {
        const QColor under = blended(button.fill, ground);
        EXPECT_GE(contrastRatio(blended(button.content, under), under), textContrast) << where;
    };
    for (const TopTimerAppearance appearance : allCases<TopTimerAppearance>()) {
        for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
            for (const CapsuleBackdrop backdrop : {blurred, clear, nothing}) {
                const CapsuleColors colors = capsuleColors(appearance, Theme(scheme), backdrop);
                for (const QColor& desktop : {QColor(Qt::white), QColor(Qt::black)}) {
                    for (const QColor& surface : {colors.background, colors.completionBackground}) {
                        const QColor ground = blended(surface, desktop);
                        for (const QColor& text : {colors.text, colors.endTime, colors.secondary}) {
                            expectLegible({Qt::transparent, text}, ground, rawValue(appearance));
                        }
                        for (const auto& look : {colors.emphasizedButton, colors.textButton,
                                                 colors.quietButton, colors.islandButton}) {
                            for (const auto& each : {look.normal, look.hovered, look.pressed}) {
                                expectLegible(each, ground, rawValue(appearance));
                            }
                        }
                    }
                }
                EXPECT_EQ(colors.background.alpha() == 255, backdrop == nothing);
            }
        }
    }
    for (const ThemeColor tint : {ThemeColor::focus, ThemeColor::breakGreen}) {
        const CapsuleButtonLook look = islandPrimaryLook(Theme(ColorScheme::light).color(tint));
        for (const auto& each : {look.normal, look.hovered, look.pressed}) {
            expectLegible(each, Qt::black, "the island's main button");
        }
    }
    EXPECT_NEAR(contrastRatio(Qt::white, Qt::black), 21, 0.01);
}

TEST_F(TopCapsuleViewTest, without_a_compositor_no_pixel_of_its_edge_is_half_painted)
{
    view.setBackdrop(CapsuleBackdrop::nothing);
    view.resize(50, 50);
    for (const TopTimerAppearance appearance : allCases<TopTimerAppearance>()) {
        content.appearance = appearance;
        view.setContent(content);
        QImage picture(view.size(), QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        view.render(&picture, {}, {}, QWidget::DrawChildren);
        for (const QRect& row : roundedRegion(view.size(), 25, ShapeEdge::hard)) {
            EXPECT_EQ(qAlpha(picture.pixel(row.topLeft())), 255) << row.y();
        }
    }
}

TEST_F(TopCapsuleViewTest, an_island_that_goes_fades_out_and_its_buttons_are_no_more_unless_motion_is_reduced)
{
    auto* style = new BrevlinStyle;
    view.setStyle(style);
    style->setParent(&view);
    view.resize(460, 126);
    view.show();
    for (const bool reducesMotion : {false, true}) {
        style->setReducesMotion(reducesMotion);
        content.showsCompletion = true;
        view.setContent(content);
        const QPointer<CapsulePage> island = view.findChild<CapsulePage*>();
        ASSERT_TRUE(island);
        content.showsCompletion = false;
        view.setContent(content);
        ASSERT_TRUE(island) << "its own button may have brought this about";
        EXPECT_EQ(island->isVisible(), !reducesMotion);
        EXPECT_TRUE(island->testAttribute(Qt::WA_TransparentForMouseEvents));
        EXPECT_TRUE(QTest::qWaitFor([&] { return !island; }, 1000));
    }
}

} // namespace
} // namespace brevlin
