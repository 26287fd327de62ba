#include "ui/controls/segmented_picker.h"

#include "ui/controls/accessibility.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

constexpr int segmentHeight = 26;
constexpr int segmentPadding = 14;
constexpr int trackInset = 2; // of the plates in their track
constexpr double trackRadius = 8;
constexpr double plateRadius = 7;
constexpr double trackOpacity = 0.075;

// The heavier weight of the chosen one must not widen it. Where a tint tells it apart as well, the others can
// be lighter.
QFont segmentFont(bool isChosen, bool isTinted)
{
    return textFont(TextRole::callout, isChosen ? QFont::DemiBold : isTinted ? QFont::Normal : QFont::Medium);
}

QColor textColor(const Segment& segment, std::optional<ThemeColor> tint, const Theme& theme)
{
    if (!segment.isEnabled())
        return theme.color(ThemeColor::tertiaryLabel);
    if (segment.isChecked() && tint)
        return theme.color(ThemeColor::onFill);
    if (segment.isChecked() || tint || segment.state() != ControlState::normal)
        return theme.color(ThemeColor::label);
    return theme.color(ThemeColor::secondaryLabel);
}

} // namespace

Segment::Segment(QWidget* parent) : PlainButton(parent)
{
    setCheckable(true);
    setStandsInRow(true);
}

QSize Segment::sizeHint() const
{
    const double text = QFontMetricsF(segmentFont(true, m_tint.has_value())).horizontalAdvance(this->text());
    return {static_cast<int>(std::ceil(text)) + 2 * segmentPadding, segmentHeight};
}

void Segment::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool isPointedAt = state() == ControlState::hovered || state() == ControlState::pressed;
    if (isPointedAt && !isChecked()) {
        painter.fillPath(continuousRoundedRect(rect(), plateRadius),
                         theme.color(ThemeColor::label, state() == ControlState::pressed ? 0.1 : 0.05));
    }
    painter.setFont(segmentFont(isChecked(), m_tint.has_value()));
    painter.setPen(textColor(*this, m_tint, theme));
    drawTextOnBaseline(painter, rect(), Qt::AlignHCenter, text());
    if (showsFocusRing())
        paintFocusRing(painter, rect(), plateRadius, theme);
}

void Segment::setTint(std::optional<ThemeColor> tint)
{
    m_tint = tint;
    update();
}

SegmentedPicker::SegmentedPicker(int count, QWidget* parent) : QWidget(parent), m_position(*this)
{
    installAccessibility();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    for (int index = 0; index < count; ++index) {
        auto* segment = new Segment(this);
        connect(segment, &QAbstractButton::clicked, this, [this, index] {
            if (index != m_currentIndex)
                Q_EMIT chosen(index);
            markCurrent(); // Qt has turned the segment over
        });
        connect(segment, &Segment::neighborRequested, this, &SegmentedPicker::chooseNeighbor);
        m_segments.push_back(segment);
    }
    connect(&m_position, &ValueAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void SegmentedPicker::setTexts(const QStringList& texts)
{
    for (std::size_t index = 0; index < m_segments.size(); ++index)
        m_segments[index]->setText(texts.value(static_cast<int>(index)));
    updateGeometry();
}

void SegmentedPicker::setNames(const QStringList& names)
{
    for (std::size_t index = 0; index < m_segments.size(); ++index) {
        m_segments[index]->setAccessibleName(names.value(static_cast<int>(index)));
        m_segments[index]->setToolTip(names.value(static_cast<int>(index)));
    }
}

void SegmentedPicker::setTint(std::optional<ThemeColor> tint)
{
    m_tint = tint;
    for (Segment* segment : m_segments)
        segment->setTint(tint);
    update();
}

void SegmentedPicker::setCurrentIndex(int index)
{
    if (index == m_currentIndex)
        return;
    const bool isFirst = m_currentIndex < 0;
    m_currentIndex = index;
    markCurrent();
    if (isFirst)
        m_position.setValue(index);
    else
        m_position.animateTo(index, {std::chrono::milliseconds(180), QEasingCurve::OutCubic, 10});
}

void SegmentedPicker::markCurrent()
{
    for (std::size_t index = 0; index < m_segments.size(); ++index) {
        const bool isCurrent = static_cast<int>(index) == m_currentIndex;
        m_segments[index]->setChecked(isCurrent);
        m_segments[index]->setFocusPolicy(isCurrent ? Qt::TabFocus : Qt::NoFocus);
    }
}

void SegmentedPicker::chooseNeighbor(int distance)
{
    const int index = std::clamp(m_currentIndex + distance, 0, static_cast<int>(m_segments.size()) - 1);
    if (index == m_currentIndex)
        return;
    Q_EMIT chosen(index);
    m_segments.at(static_cast<std::size_t>(m_currentIndex))->setFocus(Qt::TabFocusReason);
}

QSize SegmentedPicker::segmentSize() const
{
    QSize size(0, segmentHeight);
    for (const Segment* segment : m_segments)
        size = size.expandedTo(segment->sizeHint());
    return size;
}

QSize SegmentedPicker::sizeHint() const
{
    const QSize segment = segmentSize();
    return {segment.width() * static_cast<int>(m_segments.size()) + 2 * trackInset,
            segment.height() + 2 * trackInset};
}

QRectF SegmentedPicker::segmentRect(double position) const
{
    const double share = (width() - 2.0 * trackInset) / static_cast<double>(m_segments.size());
    return {trackInset + position * share, trackInset, share, segmentHeight};
}

void SegmentedPicker::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    for (std::size_t index = 0; index < m_segments.size(); ++index)
        m_segments[index]->setGeometry(segmentRect(static_cast<double>(index)).toAlignedRect());
}

void SegmentedPicker::paintEvent(QPaintEvent*)
{
    const Theme theme = Theme::of(*this);
    const bool isDark = theme.scheme() == ColorScheme::dark;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(continuousRoundedRect(rect(), trackRadius),
                     theme.color(ThemeColor::label, trackOpacity));

    const QRectF plate = segmentRect(m_position.value());
    if (m_tint) {
        painter.fillPath(continuousRoundedRect(plate, plateRadius), theme.color(fillFor(*m_tint)));
        return;
    }
    const QColor panel = theme.color(ThemeColor::panelBackground);
    painter.fillPath(continuousRoundedRect(plate.translated(0, 1), plateRadius), QColor(0, 0, 0, 26));
    painter.fillPath(continuousRoundedRect(plate, plateRadius),
                     isDark ? blended(theme.color(ThemeColor::label, 0.22), panel) : panel);
    paintHairlineInside(painter, plate, plateRadius, theme.color(ThemeColor::cardBorder));
}

} // namespace brevlin
