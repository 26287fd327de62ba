#include "ui/capsule/capsule_pages.h"

#include "app/timer_words.h"
#include "ui/capsule/capsule_controls.h"
#include "ui/controls/numeric_text.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/brevlin_mark.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

QString text(const BilingualText& pair, const CapsuleContent& content)
{
    return qtText(pair.in(content.language));
}

template <typename Button>
Button* withHelp(Button* button, const QString& help)
{
    button->setToolTip(help);
    button->setAccessibleName(help);
    return button;
}

/// Two lines of text, the second one quieter.
class TextPair final : public QWidget
{
public:
    struct Line
    {
        QFont font;
        QColor color;
        QString text;
    };

    TextPair(double spacing, double leastWidth, QWidget* parent)
        : QWidget(parent), m_spacing(spacing), m_leastWidth(leastWidth)
    {
        setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        makeSpokenElement(*this, QAccessible::StaticText, [this] { return spokenText(); });
    }

    QString spokenText() const
    {
        QStringList texts;
        for (const Line& line : m_lines) {
            texts << line.text;
        }
        return texts.join(QStringLiteral(", "));
    }
    void setLines(const Line& first, const Line& second)
    {
        m_lines = {first, second};
        updateGeometry();
        update();
    }

    QSize sizeHint() const override
    {
        double width = m_leastWidth;
        double height = m_spacing;
        for (const Line& line : m_lines) {
            const QFontMetricsF metrics(line.font);
            width = std::max(width, metrics.horizontalAdvance(line.text));
            height += std::ceil(metrics.height());
        }
        return {static_cast<int>(std::ceil(width)), static_cast<int>(std::ceil(height))};
    }
    QSize minimumSizeHint() const override { return {static_cast<int>(m_leastWidth), sizeHint().height()}; }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        double y = 0;
        for (const Line& line : m_lines) {
            const QFontMetricsF metrics(line.font);
            const double height = std::ceil(metrics.height());
            painter.setFont(line.font);
            painter.setPen(line.color);
            drawTextOnBaseline(painter, QRectF(0, y, width(), height), Qt::AlignLeft,
                               metrics.elidedText(line.text, Qt::ElideRight, width() + 1));
            y += height + m_spacing;
        }
    }

private:
    double m_spacing;
    double m_leastWidth;
    std::vector<Line> m_lines;
};

/// One line of text, made smaller where its room is too narrow.
class ShrinkingLine final : public QWidget
{
public:
    explicit ShrinkingLine(QWidget* parent) : QWidget(parent)
    {
        makeSpokenElement(*this, QAccessible::StaticText, [this] { return m_text; });
    }

    void setLine(const QFont& font, const QColor& color, const QString& text)
    {
        m_font = font;
        m_color = color;
        m_text = text;
        updateGeometry();
        update();
    }

    QSize sizeHint() const override
    {
        const QFontMetricsF metrics(m_font);
        return {static_cast<int>(std::ceil(metrics.horizontalAdvance(m_text))),
                static_cast<int>(std::ceil(metrics.height()))};
    }
    QSize minimumSizeHint() const override
    {
        return {static_cast<int>(std::ceil(sizeHint().width() * smallestScale)), sizeHint().height()};
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        const double scale =
            std::clamp(width() / std::max(1.0, 1.0 * sizeHint().width()), smallestScale, 1.0);
        painter.translate(0, height() * (1 - scale) / 2);
        painter.scale(scale, scale);
        painter.setFont(m_font);
        painter.setPen(m_color);
        drawTextOnBaseline(painter, QRectF(0, 0, width() / scale, height()), Qt::AlignLeft, m_text);
    }

private:
    static constexpr double smallestScale = 0.72;

    QFont m_font;
    QColor m_color;
    QString m_text;
};

/// The phase's icon on a disc in its colour.
class PhaseDisc final : public QWidget
{
public:
    PhaseDisc(TimerPhase phase, QWidget* parent) : QWidget(parent), m_phase(phase)
    {
        setFixedSize(diameter, diameter);
        makeSpokenElement(*this, QAccessible::Graphic, {});
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        constexpr double padding = 4;
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const Theme theme = Theme::of(*this);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.color(phaseColor(m_phase), 0.14));
        painter.drawEllipse(rect());
        paintPhaseIcon(painter, QRectF(rect()).adjusted(padding, padding, -padding, -padding), m_phase,
                       theme);
    }

private:
    static constexpr int diameter = 46;
    TimerPhase m_phase;
};

class ExpandedTimerPage final : public CapsulePage
{
public:
    ExpandedTimerPage(const CapsuleContent& content, const CapsuleColors& colors,
                      const CapsuleCommandHandler& handler, QWidget* parent)
        : CapsulePage(parent)
        , m_colors(colors)
        , m_clock(new NumericText(capsuleClockFont(clockSize), this))
        , m_end(new ShrinkingLine(this))
    {
        constexpr int leastTextWidth = 66;
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(12, 0, 12, 0);
        row->setSpacing(9);
        row->addWidget(new PhaseIconView(content.phase, 25, this));
        auto* texts = new QVBoxLayout;
        texts->setSpacing(0);
        texts->addStrut(leastTextWidth);
        texts->addWidget(m_clock);
        texts->addWidget(m_end);
        texts->setAlignment(Qt::AlignVCenter);
        row->addLayout(texts);
        row->addStretch(1);
        m_clock->setInk(colors.text);

        const auto add = [&](CapsuleRoundButton* button, const BilingualText& help, CapsuleCommand command) {
            withHelp(button, text(help, content));
            connect(button, &QAbstractButton::clicked, this, [handler, command] { handler(command); });
            row->addWidget(button);
        };
        const auto icon = [&](Symbol symbol, const CapsuleButtonLook& look) {
            return new CapsuleRoundButton(symbol, look, this);
        };
        add(new CapsuleRoundButton(QStringLiteral("+5"), colors.textButton, this),
            {"延长 5 分钟", "Add 5 minutes"}, CapsuleCommand::addTime);
        if (content.runState == TimerRunState::paused) {
            add(icon(Symbol::playFill, colors.emphasizedButton), TimerWords::resume, CapsuleCommand::primary);
        } else {
            add(icon(Symbol::pauseFill, colors.emphasizedButton), TimerWords::pause, CapsuleCommand::primary);
        }
        add(icon(Symbol::stopFill, colors.quietButton), {"提前结束当前阶段", "End current phase early"},
            CapsuleCommand::end);
        add(icon(Symbol::forwardEndFill, colors.quietButton),
            {"切换并开始下一阶段", "Switch and start next phase"}, CapsuleCommand::skip);
        if (content.isAlertSoundPlaying) {
            add(icon(Symbol::speakerSlashFill, colors.quietButton), {"停止提醒声音", "Stop alert sound"},
                CapsuleCommand::stopAlert);
        }
        setTexts(content);
    }

    void setTexts(const CapsuleContent& content) override
    {
        const QString end = text({"结束于 ", "Ends at "}, content) + qtText(content.endTimeText);
        m_clock->setText(qtText(content.clockText));
        m_end->setLine(systemFont(9.5, QFont::Medium), m_colors.endTime, end);
        setVisible(content.revealsExpandedTimerContent);
    }

private:
    static constexpr double clockSize = 17;

    CapsuleColors m_colors;
    NumericText* m_clock; // these are owned by this widget
    ShrinkingLine* m_end;
};

class CompletionIslandPage final : public CapsulePage
{
public:
    CompletionIslandPage(const CapsuleContent& content, const CapsuleColors& colors,
                         const CapsuleCommandHandler& handler, QWidget* parent)
        : CapsulePage(parent), m_colors(colors), m_texts(new TextPair(3, 0, this))
    {
        const auto connected = [&](auto* button, CapsuleCommand command) {
            connect(button, &QAbstractButton::clicked, this, [handler, command] { handler(command); });
            return button;
        };
        const auto roundButton = [&](Symbol symbol, const BilingualText& help, CapsuleCommand command) {
            auto* button = new CapsuleRoundButton(symbol, colors.quietButton, this);
            return connected(withHelp(button, text(help, content)), command);
        };
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(20, 16, 20, 16);
        column->setSpacing(12);
        column->setAlignment(Qt::AlignVCenter);

        auto* top = new QHBoxLayout;
        top->setSpacing(12);
        top->addWidget(new PhaseDisc(content.phase, this));
        top->addWidget(m_texts, 1);
        top->addWidget(roundButton(Symbol::minus, {"缩小提醒", "Minimize alert"}, CapsuleCommand::minimize));
        top->addWidget(roundButton(Symbol::xmark, {"关闭提醒", "Close alert"}, CapsuleCommand::dismiss));
        column->addLayout(top);

        auto* bottom = new QHBoxLayout;
        bottom->setSpacing(10);
        using enum IslandButton::Rank;
        if (content.isAlertSoundPlaying) {
            bottom->addWidget(
                connected(new IslandButton(text(TimerWords::stopSound, content), Symbol::speakerSlashFill,
                                           secondary, colors.islandButton, this),
                          CapsuleCommand::stopAlert));
        }
        bottom->addStretch(1);
        bottom->addWidget(
            connected(new IslandButton(qtText(TimerWords::skip(content.phase, content.language)),
                                       Symbol::none, secondary, colors.islandButton, this),
                      CapsuleCommand::skipPending));
        const QColor tint = Theme::of(*this).color(phaseColor(content.phase));
        bottom->addWidget(
            connected(new IslandButton(qtText(TimerWords::start(content.phase, content.language)),
                                       Symbol::none, primary, islandPrimaryLook(tint), this),
                      CapsuleCommand::primary));
        column->addLayout(bottom);
        setTexts(content);
        // Read aloud when it appears; the seconds never are.
        makeSpokenGroup(*this, QAccessible::Notification, [this] { return m_texts->spokenText(); });
    }

    void setTexts(const CapsuleContent& content) override
    {
        const QString headline = content.completionTitle ? qtText(*content.completionTitle)
                                                         : text({"本轮完成", "Phase complete"}, content);
        m_texts->setLines(
            {systemFont(16, QFont::DemiBold, FontDesign::rounded), m_colors.text, headline},
            {textFont(TextRole::caption), m_colors.secondary, qtText(content.cycleSummaryText)});
    }

private:
    CapsuleColors m_colors;
    TextPair* m_texts; // owned by this widget
};

class MinimizedCompletionPage final : public CapsulePage
{
public:
    MinimizedCompletionPage(const CapsuleContent& content, const CapsuleCommandHandler& handler,
                            QWidget* parent)
        : CapsulePage(parent)
    {
        auto* button = withHelp(new MinimizedCompletionButton(content.phase, this),
                                text({"展开完成提醒", "Expand completion alert"}, content));
        connect(button, &QAbstractButton::clicked, this, [handler] { handler(CapsuleCommand::restore); });
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(button);
    }

    void setTexts(const CapsuleContent& /*content*/) override {}
};

} // namespace

QFont capsuleClockFont(double points, QFont::Weight weight)
{
    return systemFont(points, weight, FontDesign::monospaced);
}

bool haveSamePage(const CapsuleContent& first, const CapsuleContent& second)
{
    const auto controls = [](const CapsuleContent& content) {
        CapsuleContent result;
        result.phase = content.phase;
        result.runState = content.runState;
        result.language = content.language;
        result.appearance = content.appearance;
        result.showsCompletion = content.showsCompletion;
        result.showsMinimizedCompletion = content.showsMinimizedCompletion;
        result.showsCompactTimer = content.showsCompactTimer;
        result.isAlertSoundPlaying = content.isAlertSoundPlaying;
        return result;
    };
    return controls(first) == controls(second);
}

CapsulePage* makeCapsulePage(const CapsuleContent& content, const CapsuleColors& colors,
                             const CapsuleCommandHandler& handler, QWidget* parent)
{
    if (content.showsMinimizedCompletion) {
        return new MinimizedCompletionPage(content, handler, parent);
    }
    if (content.showsCompletion) {
        return new CompletionIslandPage(content, colors, handler, parent);
    }
    return content.showsCompactTimer ? nullptr : new ExpandedTimerPage(content, colors, handler, parent);
}

} // namespace brevlin
