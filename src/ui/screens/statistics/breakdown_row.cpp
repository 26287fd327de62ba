#include "ui/screens/statistics/breakdown_row.h"

#include "ui/screens/statistics/statistics_texts.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace brevlin {

namespace {

constexpr double cornerRadius = 9;
constexpr double textTop = 8;
constexpr double textHeight = 18;
constexpr double barTop = 31;
constexpr double barHeight = 4;
constexpr double columnGap = 20;

QFont nameFont()
{
    return textFont(TextRole::body);
}

QFont durationFont()
{
    return textFont(TextRole::body, QFont::Medium);
}

QFont detailFont()
{
    return textFont(TextRole::callout);
}

double widthOf(const QFont& font, const QString& text)
{
    return std::ceil(QFontMetricsF(font).horizontalAdvance(text));
}

QString nameOf(const FocusGroup& group, FocusGrouping grouping, AppLanguage language)
{
    if (group.name.empty()) {
        const BilingualText none = grouping == FocusGrouping::label ? BilingualText{"无标签", "No label"}
                                                                    : BilingualText{"未填写", "No intention"};
        return qtText(none.in(language));
    }
    return qtText(grouping == FocusGrouping::label ? "#" + group.name : group.name);
}

} // namespace

QString BreakdownTexts::spoken() const
{
    return QStringList{name, duration, share, phases}.join(QStringLiteral(", "));
}

BreakdownTexts breakdownTexts(const FocusGroup& group, FocusGrouping grouping, AppLanguage language)
{
    const QString phases = language == AppLanguage::simplifiedChinese ? QStringLiteral("%1 个番茄")
                           : group.phases == 1                        ? QStringLiteral("%1 Pomodoro")
                                                                      : QStringLiteral("%1 Pomodoros");
    return {nameOf(group, grouping, language), focusDurationText(group.minutes, language),
            percentText(group.share), phases.arg(group.phases), group.name.empty()};
}

void BreakdownColumns::fit(const BreakdownTexts& texts)
{
    duration = std::max(duration, widthOf(durationFont(), texts.duration));
    share = std::max(share, widthOf(detailFont(), texts.share));
    phases = std::max(phases, widthOf(detailFont(), texts.phases));
}

BreakdownRow::BreakdownRow(QWidget* parent) : PlainButton(parent)
{
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setStandsInRow(true);
}

void BreakdownRow::show(const BreakdownTexts& texts, const BreakdownColumns& columns, double share)
{
    if (std::exchange(m_texts, texts) != texts) {
        setAccessibleName(texts.spoken()); // no text of Qt's: an ampersand in it would become a key
    }
    m_columns = columns;
    m_share = share;
    elide();
    update();
}

double BreakdownRow::nameWidth() const
{
    return width() - 2.0 * bleed - m_columns.duration - m_columns.share - m_columns.phases - 3 * columnGap;
}

void BreakdownRow::elide()
{
    m_shownName = QFontMetricsF(nameFont()).elidedText(m_texts.name, Qt::ElideRight, nameWidth());
    setToolTip(m_shownName == m_texts.name ? QString() : toolTipText(m_texts.name));
}

void BreakdownRow::focusInEvent(QFocusEvent* event)
{
    PlainButton::focusInEvent(event);
    Q_EMIT focused();
}

void BreakdownRow::resizeEvent(QResizeEvent* event)
{
    PlainButton::resizeEvent(event);
    elide();
}

void BreakdownRow::paintEvent(QPaintEvent* /*event*/)
{
    const Theme theme = Theme::of(*this);
    const ControlState current = state();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (current == ControlState::hovered || current == ControlState::pressed) {
        painter.fillPath(continuousRoundedRect(rect(), cornerRadius),
                         theme.color(ThemeColor::label, current == ControlState::pressed ? 0.09 : 0.045));
    }
    QRectF place(bleed, textTop, nameWidth(), textHeight);
    painter.setFont(nameFont());
    painter.setPen(theme.color(m_texts.isUnnamed ? ThemeColor::secondaryLabel : ThemeColor::label));
    drawTextOnBaseline(painter, place, Qt::AlignLeft, m_shownName);
    const auto drawColumn = [&](double width, const QFont& font, ThemeColor color, const QString& text) {
        place = QRectF(place.right() + columnGap, textTop, width, textHeight);
        painter.setFont(font);
        painter.setPen(theme.color(color));
        drawTextOnBaseline(painter, place, Qt::AlignRight, text);
    };
    drawColumn(m_columns.phases, detailFont(), ThemeColor::secondaryLabel, m_texts.phases);
    drawColumn(m_columns.share, detailFont(), ThemeColor::secondaryLabel, m_texts.share);
    drawColumn(m_columns.duration, durationFont(), ThemeColor::label, m_texts.duration);

    const QRectF track(bleed, barTop, width() - 2.0 * bleed, barHeight);
    painter.fillPath(capsulePath(track), theme.color(ThemeColor::label, 0.06));
    if (m_share > 0) {
        QRectF bar = track;
        bar.setWidth(std::max(track.width() * m_share, barHeight));
        painter.fillPath(capsulePath(bar), m_texts.isUnnamed ? theme.color(ThemeColor::label, 0.2)
                                                             : theme.color(ThemeColor::focus, 0.6));
    }
    if (showsFocusRing()) {
        paintFocusRing(painter, rect(), cornerRadius, theme);
    }
}

} // namespace brevlin
