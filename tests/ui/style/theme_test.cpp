#include "ui/controls/capsule_button.h"
#include "ui/style/contrast.h"
#include "ui/style/theme.h"

#include <gtest/gtest.h>

namespace brevlin {
namespace {

class EveryScheme : public testing::TestWithParam<ColorScheme>
{
protected:
    const Theme theme{GetParam()};

    double contrast(const QColor& ink, ThemeColor background) const
    {
        const QColor ground = theme.color(background);
        return contrastRatio(blended(ink, ground), ground);
    }
};

INSTANTIATE_TEST_SUITE_P(Theme, EveryScheme, testing::Values(ColorScheme::light, ColorScheme::dark));

TEST_P(EveryScheme, text_can_be_read_on_every_background)
{
    for (const ThemeColor background :
         {ThemeColor::canvas, ThemeColor::panelBackground, ThemeColor::windowBackground}) {
        for (const ThemeColor text : {ThemeColor::label, ThemeColor::secondaryLabel, ThemeColor::focusText,
                                      ThemeColor::breakGreenText, ThemeColor::green, ThemeColor::orange}) {
            EXPECT_GE(contrast(theme.color(text), background), textContrast)
                << static_cast<int>(text) << " on " << static_cast<int>(background);
        }
        for (const ThemeColor shape :
             {ThemeColor::tertiaryLabel, ThemeColor::focusRing, ThemeColor::focus, ThemeColor::breakGreen}) {
            EXPECT_GE(contrast(theme.color(shape), background), symbolContrast)
                << static_cast<int>(shape) << " on " << static_cast<int>(background);
        }
    }
}

TEST_P(EveryScheme, a_button_can_be_read_in_every_state)
{
    for (const ThemeColor ground :
         {ThemeColor::canvas, ThemeColor::panelBackground, ThemeColor::windowBackground}) {
        for (const CapsuleStyle style :
             {CapsuleStyle::primary, CapsuleStyle::secondary, CapsuleStyle::destructive}) {
            for (const TimerPhase phase : allCases<TimerPhase>()) {
                for (const ControlState state :
                     {ControlState::normal, ControlState::hovered, ControlState::pressed}) {
                    const auto [fill, label] = CapsuleButton::colors(style, phaseColor(phase), state, theme);
                    const QColor under = blended(fill, theme.color(ground));
                    EXPECT_GE(contrastRatio(blended(label, under), under), textContrast)
                        << static_cast<int>(style) << " phase " << static_cast<int>(phase) << " state "
                        << static_cast<int>(state);
                }
            }
        }
    }
}

TEST_P(EveryScheme, highlighted_and_disabled_text_of_plain_widgets_follows_the_table)
{
    const QPalette palette = Theme::palette(GetParam());
    EXPECT_GE(contrastRatio(palette.color(QPalette::HighlightedText), palette.color(QPalette::Highlight)),
              textContrast);
    EXPECT_GE(contrastRatio(palette.color(QPalette::ToolTipText), palette.color(QPalette::ToolTipBase)),
              textContrast);
    EXPECT_GE(contrastRatio(palette.color(QPalette::ButtonText), palette.color(QPalette::Button)),
              textContrast);
    EXPECT_NE(palette.color(QPalette::Disabled, QPalette::ButtonText),
              palette.color(QPalette::Active, QPalette::ButtonText));
}

} // namespace
} // namespace brevlin
