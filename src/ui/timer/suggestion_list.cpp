#include "ui/timer/suggestion_list.h"

#include "ui/controls/popup_frame.h"
#include "ui/controls/spoken_element.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>

namespace brevlin {

namespace {

constexpr int rowHeight = 28;
constexpr int inset = 5;
constexpr int gap = 4; // to the field
constexpr double cornerRadius = 10;
constexpr double rowRadius = 6;
constexpr double textPadding = 9;

} // namespace

SuggestionList::SuggestionList(QWidget& field) : QWidget(field.window()), m_field(field)
{
    hide();
    setFocusPolicy(Qt::NoFocus);
    setMouseTracking(true);
    field.window()->installEventFilter(this);
    makeSpokenGroup(*this, QAccessible::List, [this] { return m_texts.join(QStringLiteral(", ")); });
}

void SuggestionList::show(const QStringList& texts)
{
    m_texts = texts;
    m_marked = -1;
    setVisible(!texts.isEmpty());
    if (!texts.isEmpty()) {
        place();
        raise();
        update();
    }
}

void SuggestionList::place()
{
    const int height = rowHeight * static_cast<int>(m_texts.size()) + 2 * inset;
    const QRect field(m_field.mapTo(window(), QPoint(0, 0)), m_field.size());
    const QRect room = window()->contentsRect();
    const bool fitsBelow = field.bottom() + gap + height < room.bottom();
    setGeometry(field.left(), fitsBelow ? field.bottom() + 1 + gap : field.top() - gap - height,
                field.width(), height);
}

std::optional<QString> SuggestionList::marked() const
{
    return isVisible() && m_marked >= 0 ? std::optional{m_texts.at(m_marked)} : std::nullopt;
}

void SuggestionList::step(int change)
{
    const int count = static_cast<int>(m_texts.size()) + 1; // and the place where nothing is marked
    mark((m_marked + 1 + change + count) % count - 1);
    if (m_marked >= 0) {
        announce(m_field, m_texts.at(m_marked));
    }
}

void SuggestionList::mark(int row)
{
    if (m_marked != row) {
        m_marked = row;
        update();
    }
}

QRect SuggestionList::rowRect(int row) const
{
    return {inset, inset + row * rowHeight, width() - 2 * inset, rowHeight};
}

int SuggestionList::rowAt(const QPoint& position) const
{
    const int row = (position.y() - inset) / rowHeight;
    const bool isOnRow = row >= 0 && row < m_texts.size() && rowRect(row).contains(position);
    return isOnRow ? row : -1;
}

// The field moves with its window's layout.
bool SuggestionList::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Resize && isVisible()) {
        show({});
    }
    return QWidget::eventFilter(watched, event);
}

void SuggestionList::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    mark(-1);
}

void SuggestionList::mouseMoveEvent(QMouseEvent* event)
{
    mark(rowAt(event->position().toPoint()));
}

void SuggestionList::mousePressEvent(QMouseEvent* event)
{
    const int row = rowAt(event->position().toPoint());
    if (event->button() == Qt::LeftButton && row >= 0) {
        Q_EMIT chosen(QString(m_texts.at(row)));
    }
}

void SuggestionList::paintEvent(QPaintEvent* /*event*/)
{
    const Theme theme = Theme::of(*this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    paintPopup(painter, rect(), cornerRadius, PopupShadow::none, theme);
    painter.setFont(textFont(TextRole::body));
    const QFontMetricsF metrics(painter.font());
    for (int row = 0; row < m_texts.size(); ++row) {
        const QRectF place = rowRect(row);
        if (row == m_marked) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(theme.color(ThemeColor::label, 0.08));
            painter.drawRoundedRect(place, rowRadius, rowRadius);
        }
        painter.setPen(theme.color(ThemeColor::label));
        const QRectF text = place.adjusted(textPadding, 0, -textPadding, 0);
        drawTextOnBaseline(painter, text, Qt::AlignLeft,
                           metrics.elidedText(m_texts.at(row), Qt::ElideRight, text.width()));
    }
}

} // namespace brevlin
