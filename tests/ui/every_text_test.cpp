#include "app/model_fixture.h"
#include "support/drawn_texts.h"
#include "support/plain_desktop.h"
#include "ui/capsule/top_capsule_view.h"
#include "ui/controls/brevlin_style.h"
#include "ui/main/main_window.h"
#include "ui/main/message_dialog.h"
#include "ui/screens/settings/clear_history_dialog.h"
#include "ui/style/built_in_fonts.h"
#include "ui/style/contrast.h"
#include "ui/style/theme.h"
#include "ui/tray/tray_panel.h"

#include <QAbstractButton>
#include <QApplication>
#include <QImage>

#include <map>

namespace brevlin {
namespace {

/// The colour that most of this part of a picture has: what a text there stands on.
QColor groundOf(const QImage& picture, const QRectF& part)
{
    std::map<QRgb, int> counts;
    const QRect rect = part.adjusted(-2, -2, 2, 2).toAlignedRect() & picture.rect();
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            ++counts[picture.pixel(x, y)];
    }
    const auto most = std::ranges::max_element(counts, {}, [](const auto& count) { return count.second; });
    return most == counts.end() ? QColor() : QColor(most->first);
}

class EveryText : public test::ModelTest
{
protected:
    ~EveryText() override { QApplication::setPalette(Theme::palette(ColorScheme::light)); }

    void expectWhole(QWidget& widget, const std::string& where)
    {
        for (const int pixelRatio : {1, 2}) {
            const auto texts = test::drawnTexts(widget, pixelRatio);
            EXPECT_FALSE(texts.empty()) << where;
            for (const test::DrawnText& drawn : texts) {
                EXPECT_TRUE(BuiltInFonts::cover(drawn.text)) << drawn.text.toStdString();
                constexpr double rounding = 1; // of a glyph's box, to whole pixels
                const bool isWhole =
                    drawn.visible.adjusted(-rounding, -rounding, rounding, rounding).contains(drawn.ink);
                EXPECT_TRUE(isWhole && !drawn.text.contains(QChar(0x2026)))
                    << where << ", " << pixelRatio << "x: " << drawn.text.toStdString() << " "
                    << drawn.ink.left() << "," << drawn.ink.top() << " " << drawn.ink.right() << ","
                    << drawn.ink.bottom() << " in " << drawn.visible.left() << "," << drawn.visible.top()
                    << " " << drawn.visible.right() << "," << drawn.visible.bottom();
            }
        }
    }
    void expectLegible(QWidget& widget, const std::string& where)
    {
        const auto buttons = widget.findChildren<QAbstractButton*>();
        for (const char* state : {"", " hovered", " pressed"}) {
            for (QAbstractButton* button : buttons) {
                button->setAttribute(Qt::WA_UnderMouse, *state != '\0' && button->isEnabled());
                button->setDown(std::string(state) == " pressed" && button->isEnabled());
            }
            const QImage picture = widget.grab().toImage();
            for (const test::DrawnText& drawn : test::drawnTexts(widget, 1)) {
                const QColor ground = groundOf(picture, drawn.ink & drawn.visible);
                if (ground.isValid()) {
                    EXPECT_GE(contrastRatio(blended(drawn.color, ground), ground), textContrast)
                        << where << state << ": " << drawn.text.toStdString() << " on "
                        << ground.name().toStdString();
                }
            }
        }
    }
    void show(QWidget& widget, const QSize& size)
    {
        widget.setMinimumSize(1, 1);
        widget.resize(size);
        widget.show();
        QApplication::processEvents();
    }
    /// In each language and scheme, in each state of the timer.
    template <typename Look>
    void inEveryState(Look look)
    {
        for (const AppLanguage language : allCases<AppLanguage>()) {
            for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
                storePreferences([language](AppPreferences& preferences) {
                    preferences.appLanguage = language;
                    preferences.timerSettings.alertIntensity = AlertIntensity::strong;
                });
                QApplication::setPalette(Theme::palette(scheme));
                launch();
                model().start();
                scheduler.advance(Seconds{60});
                model().endCurrentPhase(); // so that there is a history
                model().skipPendingPhase();
                model().skipPendingPhase();
                const std::string where =
                    std::string(rawValue(language)) + (scheme == ColorScheme::dark ? " dark " : " light ");
                look(where + "idle");
                model().start();
                look(where + "running");
                model().pause();
                look(where + "paused");
                model().resume();
                scheduler.advance(Seconds{2000});
                look(where + "ringing");
                for (int phase = 0; phase < 6; ++phase) {
                    model().skipPendingPhase();
                    model().start();
                    scheduler.advance(Seconds{2000});
                }
                look(where + "ringing for a long break");
            }
        }
    }

    MainWindowStore m_store{disk()};
    test::PlainWindowSystem m_windowSystem;
    test::NoPanels m_panels;
};

TEST_F(EveryText, is_whole_and_can_be_read_in_the_main_window)
{
    inEveryState([this](const std::string& where) {
        SectionSelection selection(m_store);
        MainWindow window(model(), selection, m_store, m_windowSystem, m_panels);
        window.present({});
        for (const AppSection section : allCases<AppSection>()) {
            if (section != AppSection::timer && where.find("idle") == std::string::npos)
                continue;
            selection.select(section);
            const std::string screen = where + " " + std::to_string(static_cast<int>(section));
            show(window, {802, 2400});
            expectWhole(window, screen);
            expectLegible(window, screen);
        }
    });
}

TEST_F(EveryText, is_whole_in_every_look_of_the_capsule)
{
    BrevlinStyle still;
    still.setReducesMotion(true);
    for (const AppLanguage language : allCases<AppLanguage>()) {
        for (const bool isIsland : {false, true}) {
            TopCapsuleView view;
            view.setStyle(&still);
            CapsuleContent content;
            content.language = language;
            content.phase = TimerPhase::longBreak;
            content.runState = isIsland ? TimerRunState::ringing : TimerRunState::running;
            content.clockText = "1:05:00";
            content.endTimeText = "12:44 PM";
            content.cycleSummaryText =
                BilingualText{"循环第 12/12 阶段 · 已专注 1440 分钟", "Cycle 12/12 · 1440 focus min"}.in(
                    language);
            content.completionTitle = BilingualText{"长休息完成", "Long break complete"}.in(language);
            content.showsCompactTimer = false;
            content.revealsExpandedTimerContent = true;
            content.showsCompletion = isIsland;
            content.isAlertSoundPlaying = true;
            view.setContent(content);
            show(view, isIsland ? QSize(460, 126) : QSize(350, 50));
            expectWhole(view, std::string(rawValue(language)) + (isIsland ? " island" : " capsule"));
        }
    }
}

TEST_F(EveryText, is_whole_and_can_be_read_in_a_dialog)
{
    inEveryState([this](const std::string& where) {
        ClearHistoryDialog question(model(), nullptr);
        MessageDialog message({Uuid{}, "Timer state reset", "The saved timer could not be read."},
                              model().language(), nullptr);
        for (QDialog* dialog : std::initializer_list<QDialog*>{&question, &message}) {
            dialog->show();
            QApplication::processEvents();
            expectWhole(*dialog, where);
            expectLegible(*dialog, where);
        }
    });
}

TEST_F(EveryText, is_whole_and_can_be_read_in_the_panel)
{
    inEveryState([this](const std::string& where) {
        TrayPanel panel(model(), m_windowSystem, m_panels);
        panel.toggle({100, 100});
        QApplication::processEvents();
        expectWhole(panel, where);
        expectLegible(panel, where);
    });
}

} // namespace
} // namespace brevlin
