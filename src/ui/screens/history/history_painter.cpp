#include "ui/screens/history/history_painter.h"

#include "ui/controls/card_surface.h"
#include "ui/style/brevlin_mark.h"
#include "ui/style/focus_ring.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace brevlin {

namespace {

constexpr double padding = 16;
constexpr double badgeSize = 32;
constexpr double iconSize = 26;
constexpr double badgeSpacing = 13;
constexpr double titleSpacing = 7;
constexpr double lineSpacing = 4;
constexpr int dividerIndent = 62;
constexpr double stateInset = 5;
constexpr double stateRadius = 9;

ThemeColor outcomeColor(SessionOutcome outcome)
{
    switch (outcome) {
    case SessionOutcome::completed:
    case SessionOutcome::completedWhileAway:
        return ThemeColor::green;
    case SessionOutcome::skipped:
    case SessionOutcome::endedEarly:
    case SessionOutcome::switchedEarly:
        return ThemeColor::orange;
    case SessionOutcome::reset:
        break;
    }
    return ThemeColor::secondaryLabel;
}

QString elided(const QFont& font, const QString& text, double width)
{
    return QFontMetricsF(font).elidedText(text, Qt::ElideRight, width + 1);
}

void drawText(QPainter& painter, const QRectF& place, Qt::Alignment alignment, const QFont& font,
              const QColor& color, const QString& text)
{
    painter.setFont(font);
    painter.setPen(color);
    drawTextOnBaseline(painter, place, alignment, elided(font, text, place.width()));
}

} // namespace

HistoryPainter::HistoryPainter()
    : m_date(systemFont(14, QFont::DemiBold))
    , m_summary(textFont(TextRole::caption))
    , m_phase(textFont(TextRole::callout, QFont::DemiBold))
    , m_outcome(textFont(TextRole::smallCaption, QFont::Medium))
    , m_duration(systemFont(13, QFont::DemiBold, FontDesign::rounded))
    , m_timeRange(textFont(TextRole::caption))
    , m_intention(textFont(TextRole::caption))
{}

void HistoryPainter::paintCard(QPainter& painter, const QRect& card, const QRect& visible, const Theme& theme)
{
    // A card of a thousand rows is cut to what can be seen of it, with its ends beyond the edges.
    constexpr int beyond = 82;
    QRect part = card.marginsAdded(CardSurface::shadowMargins);
    part.setTop(std::max(part.top(), visible.top() - beyond));
    part.setBottom(std::min(part.bottom(), visible.bottom() + beyond));
    paintCardSurface(painter, part, theme, CardGround::unknown);
}

void HistoryPainter::paintHeader(QPainter& painter, const QRect& header, const QString& date,
                                 const QString& summary, const Theme& theme) const
{
    const QRectF place = QRectF(header).adjusted(padding, 0, -padding, 0);
    const double summaryWidth = QFontMetricsF(m_summary).horizontalAdvance(summary);
    drawText(painter, place, Qt::AlignRight, m_summary, theme.color(ThemeColor::secondaryLabel), summary);
    drawText(painter, place.adjusted(0, 0, -summaryWidth - padding, 0), Qt::AlignLeft, m_date,
             theme.color(ThemeColor::label), date);
    paintHairline(painter, header, Qt::BottomEdge, theme.color(ThemeColor::separator));
}

void HistoryPainter::paintRow(QPainter& painter, const QRect& row, const SessionRecord& record,
                              const HistoryRowTexts& texts, const HistoryRowState& state,
                              const Theme& theme) const
{
    const TimerPhase phase = shownPhase(record);
    const QRectF bounds = QRectF(row).adjusted(stateInset, stateInset - 1, -stateInset, -stateInset);
    if (state.isHovered || state.isSelected) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.color(ThemeColor::label, state.isSelected ? 0.08 : 0.04));
        painter.drawRoundedRect(bounds, stateRadius, stateRadius);
    }

    const double middle = row.top() + (row.height() - 1) / 2.0;
    const QRectF badge(row.left() + padding, middle - badgeSize / 2, badgeSize, badgeSize);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.color(phaseColor(phase), 0.1));
    painter.drawEllipse(badge);
    QRectF icon(0, 0, iconSize, iconSize);
    icon.moveCenter(badge.center());
    paintPhaseIcon(painter, icon, phase, theme);

    const QString duration = qtText(texts.duration);
    const QString timeRange = qtText(texts.timeRange);
    const QFontMetricsF durationMetrics(m_duration);
    const QFontMetricsF timeMetrics(m_timeRange);
    const double rightEdge = row.right() + 1 - padding;
    const double columnWidth = std::min(
        std::max(durationMetrics.horizontalAdvance(duration), timeMetrics.horizontalAdvance(timeRange)),
        row.width() * 0.6);
    const double height = durationMetrics.height() + lineSpacing + timeMetrics.height();
    QRectF line(rightEdge - columnWidth, middle - height / 2, columnWidth, durationMetrics.height());
    drawText(painter, line, Qt::AlignRight, m_duration, theme.color(ThemeColor::label), duration);
    line.moveTop(line.bottom() + lineSpacing);
    line.setHeight(timeMetrics.height());
    drawText(painter, line, Qt::AlignRight, m_timeRange, theme.color(ThemeColor::secondaryLabel), timeRange);

    const QRectF title(QPointF(badge.right() + badgeSpacing, row.top()),
                       QPointF(rightEdge - columnWidth - padding, row.bottom()));
    paintTitle(painter, title, texts, shownOutcome(record), theme);

    if (!state.isLastOfDay) {
        paintHairline(painter, QRectF(row).adjusted(dividerIndent, 0, 0, 0), Qt::BottomEdge,
                      theme.color(ThemeColor::separator));
    }
    if (state.showsFocusRing) {
        paintFocusRing(painter, bounds, stateRadius, theme);
    }
}

// The phase and how it ended, and below them what it was for.
void HistoryPainter::paintTitle(QPainter& painter, const QRectF& room, const HistoryRowTexts& texts,
                                SessionOutcome outcome, const Theme& theme) const
{
    const double height = QFontMetricsF(m_phase).height();
    const double intentionHeight = QFontMetricsF(m_intention).height();
    QRectF line = room;
    if (!texts.intention.empty()) {
        line.setTop(room.center().y() - (height + lineSpacing + intentionHeight) / 2);
        line.setHeight(height);
        const QRectF below(line.left(), line.bottom() + lineSpacing, line.width(), intentionHeight);
        drawText(painter, below, Qt::AlignLeft, m_intention, theme.color(ThemeColor::secondaryLabel),
                 qtText(texts.intention));
    }
    const auto draw = [&](const QFont& font, const QColor& color, const std::string& text) {
        const QString words = qtText(text);
        if (line.width() > 0 && !words.isEmpty()) {
            drawText(painter, line, Qt::AlignLeft, font, color, words);
            line.setLeft(line.left() + QFontMetricsF(font).horizontalAdvance(words) + titleSpacing);
        }
    };
    draw(m_phase, theme.color(ThemeColor::label), texts.phase);
    draw(m_outcome, theme.color(outcomeColor(outcome)), texts.outcome);
    draw(m_outcome, theme.color(texts.isQuestion ? ThemeColor::orange : ThemeColor::secondaryLabel),
         texts.mark);
}

} // namespace brevlin
