#include "ui/screens/statistics/activity_chart.h"

#include "ui/screens/statistics/accessible_activity.h"
#include "ui/screens/statistics/activity_painter.h"
#include "ui/screens/statistics/activity_texts.h"
#include "ui/screens/statistics/granularity_row.h"
#include "ui/style/text.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QLinearGradient>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace brevlin {

namespace {

constexpr AnimationTiming arrival{std::chrono::milliseconds(180), QEasingCurve::OutCubic, 8};

bool isWalkingKey(const QKeyEvent& event)
{
    const bool isPlain = (event.modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    return isPlain && (event.key() == Qt::Key_Left || event.key() == Qt::Key_Right ||
                       event.key() == Qt::Key_Up || event.key() == Qt::Key_Down);
}

std::optional<std::size_t> todaysElement(const ActivityPicture& picture)
{
    const auto found = std::find_if(picture.elements.begin(), picture.elements.end(),
                                    [](const ActivityElement& element) { return element.isToday; });
    return found == picture.elements.end()
               ? std::nullopt
               : std::optional(static_cast<std::size_t>(std::distance(picture.elements.begin(), found)));
}

} // namespace

ActivityChart::ActivityChart(QWidget* parent) : QWidget(parent), m_arrival(*this, 1)
{
    installAccessibleActivity();
    setFocusPolicy(Qt::TabFocus);
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    connect(&m_arrival, &ValueAnimation::valueChanged, this, qOverload<>(&QWidget::update));
}

void ActivityChart::show(const ActivityInput& input)
{
    const bool isSamePeriod = m_input && m_input->statistics.granularity == input.statistics.granularity &&
                              m_input->statistics.interval == input.statistics.interval;
    const bool isFirst = !m_input;
    const double heightBefore = m_picture.size.height();
    if (!isSamePeriod && !isFirst) {
        m_leaving = std::move(m_picture);
        m_leavingScroll = m_scroll;
    }
    m_input = input;
    m_picture = activityPicture(input, width());
    setAccessibleName(qtText(granularityRow(input.statistics.granularity).chartName.in(input.language)));
    if (m_picture.size.height() != heightBefore) {
        updateGeometry();
    }
    if (!isSamePeriod) {
        pointAt(std::nullopt);
        QToolTip::hideText();
        m_current = hasFocus() ? todaysElement(m_picture).value_or(0) : std::optional<std::size_t>{};
        m_scroll = 0;
        if (const auto today = todaysElement(m_picture)) {
            reveal(*today);
        }
    }
    // The clock may have been set back, and a year then has fewer days to show.
    for (auto* index : {&m_current, &m_pointedAt}) {
        if (*index && **index >= m_picture.elements.size()) {
            index->reset();
        }
    }
    if (m_pointedAt) {
        showToolTip(*m_pointedAt); // of the new figures
    }
    if (m_current && hasFocus() && !isSamePeriod) {
        announceCurrent();
    }
    if (!isSamePeriod && !isFirst) {
        m_arrival.setValue(0);
        m_arrival.animateTo(1, arrival);
    }
    update();
}

QSize ActivityChart::sizeHint() const
{
    return {0, static_cast<int>(std::ceil(m_picture.size.height()))};
}

QRectF ActivityChart::elementRect(std::size_t index) const
{
    return m_picture.elements.at(index).shape.translated(-m_scroll, 0);
}

QString ActivityChart::elementToolTip(std::size_t index) const
{
    return bucketToolTip(m_picture.granularity, m_picture.elements.at(index).bucket, m_input->calendar,
                         m_input->language);
}

QString ActivityChart::spokenText(std::size_t index) const
{
    const FocusTimeBucket& bucket = m_picture.elements.at(index).bucket;
    const QString name = bucketName(m_picture.granularity, bucket, m_input->calendar, m_input->language);
    const bool isEnglish = m_input->language == AppLanguage::english;
    return name + (isEnglish ? QStringLiteral(", ") : QStringLiteral("，")) +
           bucketValue(bucket, m_input->language);
}

std::optional<std::size_t> ActivityChart::elementAtPosition(QPointF position) const
{
    if (position.x() < m_picture.pinnedWidth) {
        return std::nullopt;
    }
    return elementAt(m_picture, position + QPointF(m_scroll, 0));
}

void ActivityChart::scrollTo(double offset)
{
    const double most = std::max(0.0, m_picture.size.width() - width());
    const double scroll = std::clamp(std::round(offset), 0.0, std::ceil(most));
    if (scroll != m_scroll) {
        m_scroll = scroll;
        update();
    }
}

void ActivityChart::reveal(std::size_t index)
{
    constexpr double margin = 30; // so that its neighbours are seen, too
    const QRectF shape = m_picture.elements.at(index).shape;
    const double firstSeen = m_scroll + m_picture.pinnedWidth;
    if (shape.right() + margin > m_scroll + width()) {
        scrollTo(shape.right() + margin - width());
    } else if (shape.left() - margin < firstSeen) {
        scrollTo(shape.left() - margin - m_picture.pinnedWidth);
    }
}

bool ActivityChart::event(QEvent* event)
{
    // The screen's own arrow keys stand back while the chart has the keyboard.
    if (event->type() == QEvent::ShortcutOverride && isWalkingKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void ActivityChart::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    if (m_arrival.value() < 1) {
        painter.setOpacity(1 - m_arrival.value());
        paintPeriod(painter, m_leaving, m_leavingScroll);
    }
    if (m_arrival.value() > 0) {
        painter.setOpacity(m_arrival.value());
        paintPeriod(painter, m_picture, m_scroll);
    }
    painter.setOpacity(1);
    const Theme theme = Theme::of(*this);
    clipToMoved(painter, m_picture);
    painter.translate(-m_scroll, 0);
    if (m_pointedAt) {
        paintPointedAt(painter, m_picture, *m_pointedAt, theme);
    }
    if (m_current && m_keyboardFocus.isShown()) {
        paintFocused(painter, m_picture, *m_current, theme);
    }
}

void ActivityChart::clipToMoved(QPainter& painter, const ActivityPicture& picture) const
{
    constexpr double ringRoom = 3; // for the ring around the first elements
    const double left = std::max(0.0, picture.pinnedWidth - ringRoom);
    painter.setClipRect(QRectF(left, 0, width() - left, height()));
}

void ActivityChart::paintPeriod(QPainter& painter, const ActivityPicture& picture, double scroll) const
{
    const Theme theme = Theme::of(*this);
    painter.save();
    clipToMoved(painter, picture);
    painter.translate(-scroll, 0);
    paintActivity(painter, picture, theme);
    painter.translate(scroll, 0);
    paintFadingEdges(painter, picture, scroll);
    painter.restore();
    paintPinned(painter, picture, theme);
}

// What is cut off fades, which says that there is more.
void ActivityChart::paintFadingEdges(QPainter& painter, const ActivityPicture& picture, double scroll) const
{
    constexpr double fadeWidth = 24;
    const QColor panel = Theme::of(*this).color(ThemeColor::panelBackground);
    QColor clear = panel;
    clear.setAlpha(0);
    const auto fade = [&](double edge, double inner) {
        QLinearGradient gradient(edge, 0, inner, 0);
        gradient.setColorAt(0, panel);
        gradient.setColorAt(1, clear);
        painter.fillRect(QRectF(std::min(edge, inner), 0, fadeWidth, height()), gradient);
    };
    if (scroll > 0) {
        // One point into the fade: where the two would meet within a pixel, it would show what is below.
        painter.fillRect(QRectF(0, 0, picture.pinnedWidth + 1, height()), panel);
        fade(picture.pinnedWidth, picture.pinnedWidth + fadeWidth);
    }
    if (picture.size.width() > scroll + width()) {
        fade(width(), width() - fadeWidth);
    }
}

void ActivityChart::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    if (!m_input || event->size().width() == event->oldSize().width()) {
        return;
    }
    m_arrival.setValue(1);
    m_picture = activityPicture(*m_input, width());
    scrollTo(m_scroll);
    if (const auto element = m_current ? m_current : todaysElement(m_picture)) {
        reveal(*element);
    }
}

void ActivityChart::mouseMoveEvent(QMouseEvent* event)
{
    pointAt(elementAtPosition(event->position()));
}

void ActivityChart::leaveEvent(QEvent* event)
{
    pointAt(std::nullopt);
    QWidget::leaveEvent(event);
}

void ActivityChart::pointAt(std::optional<std::size_t> index)
{
    if (index == m_pointedAt) {
        return;
    }
    m_pointedAt = index;
    if (index) {
        showToolTip(*index);
    } else {
        QToolTip::hideText();
    }
    update();
}

void ActivityChart::wheelEvent(QWheelEvent* event)
{
    const QPoint pixels = event->pixelDelta();
    double sideways = pixels.isNull() ? event->angleDelta().x() / 2.0 : pixels.x();
    if (event->modifiers() & Qt::ShiftModifier && sideways == 0) {
        sideways = pixels.isNull() ? event->angleDelta().y() / 2.0 : pixels.y();
    }
    if (sideways == 0 || m_picture.size.width() <= width()) {
        event->ignore(); // for the screen, which moves up and down
        return;
    }
    scrollTo(m_scroll - sideways);
    pointAt(elementAtPosition(event->position()));
    event->accept();
}

void ActivityChart::keyPressEvent(QKeyEvent* event)
{
    if (!isWalkingKey(*event) || m_picture.elements.empty()) {
        QWidget::keyPressEvent(event);
        return;
    }
    walkTo(m_current ? neighbor(m_picture, *m_current, static_cast<Qt::Key>(event->key())) : 0);
}

void ActivityChart::walkTo(std::size_t index)
{
    m_current = index;
    reveal(index);
    showToolTip(index);
    announceCurrent();
    update();
}

// Below the bar with its labels, or below the cell, where it hides neither this one nor the ones beside it.
void ActivityChart::showToolTip(std::size_t index)
{
    constexpr QPoint ownOffset{2, 11}; // Qt puts a tool tip (2, 16) away from where it is asked to be
    const QRectF shape = elementRect(index);
    const double bottom = m_picture.isHeatmap ? shape.bottom() : m_picture.elements.at(index).area.bottom();
    const QPoint below = mapToGlobal(QPointF(shape.left(), bottom).toPoint());
    QToolTip::showText(below - ownOffset, elementToolTip(index), this);
}

void ActivityChart::announceCurrent()
{
    if (!hasFocus() || !m_current) {
        return;
    }
    QAccessibleEvent event(this, QAccessible::Focus);
    event.setChild(static_cast<int>(*m_current));
    QAccessible::updateAccessibility(&event);
}

void ActivityChart::focusInEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusGained(*event);
    QWidget::focusInEvent(event);
    if (!m_current && !m_picture.elements.empty()) {
        m_current = todaysElement(m_picture).value_or(0);
    }
    if (m_current && m_keyboardFocus.isShown()) {
        walkTo(*m_current);
        // Once more after the chart itself, which Qt tells of next.
        QMetaObject::invokeMethod(this, &ActivityChart::announceCurrent, Qt::QueuedConnection);
    }
}

void ActivityChart::focusOutEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusLost(*event);
    QToolTip::hideText();
    QWidget::focusOutEvent(event);
}

} // namespace brevlin
