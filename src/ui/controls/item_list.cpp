#include "ui/controls/item_list.h"

#include "ui/controls/scroll_view.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"
#include "ui/style/typography.h"

#include <QPainter>
#include <QStyledItemDelegate>

#include <algorithm>

namespace brevlin {

namespace {

constexpr int lineHeight = 30;
constexpr int padding = 10;
constexpr int frame = 5;
constexpr int mostVisible = 7;
constexpr double lineRadius = 6;
constexpr int trailingRole = Qt::UserRole;

class LineDelegate final : public QStyledItemDelegate
{
public:
    explicit LineDelegate(ItemList* list) : QStyledItemDelegate(list), m_list(list) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        const ItemList::Look look{option.state.testFlag(QStyle::State_Selected),
                                  option.state.testFlag(QStyle::State_MouseOver),
                                  !option.state.testFlag(QStyle::State_Enabled)};
        m_list->paintLine(*painter, option.rect, index, look);
    }
    QSize sizeHint(const QStyleOptionViewItem& /*option*/, const QModelIndex& /*index*/) const override
    {
        return {0, lineHeight};
    }

private:
    ItemList* m_list;
};

} // namespace

ItemList::ItemList(QWidget* parent) : QListWidget(parent)
{
    setFrameShape(QFrame::NoFrame);
    setViewportMargins(frame, frame, 0, frame);
    setItemDelegate(new LineDelegate(this));
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setVerticalScrollBar(new SlimScrollBar(Qt::Vertical, this));
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // so that nothing moves sideways
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    setChoosable(false);
}

void ItemList::setChoosable(bool choosable)
{
    m_isChoosable = choosable;
    setSelectionMode(choosable ? SingleSelection : NoSelection);
}

void ItemList::addLine(const QString& leading, const QString& trailing, bool canBeChosen)
{
    auto* line = new QListWidgetItem(leading, this);
    line->setData(trailingRole, trailing);
    line->setData(Qt::AccessibleTextRole, leading + QStringLiteral(", ") + trailing);
    if (!canBeChosen) {
        line->setFlags(Qt::NoItemFlags);
    }
    updateGeometry();
}

QSize ItemList::sizeHint() const
{
    return {0, std::clamp(count(), 1, mostVisible) * lineHeight + 2 * frame};
}

void ItemList::focusInEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusGained(*event);
    QListWidget::focusInEvent(event);
    viewport()->update();
}

void ItemList::focusOutEvent(QFocusEvent* event)
{
    m_keyboardFocus.focusLost(*event);
    QListWidget::focusOutEvent(event);
    viewport()->update();
}

void ItemList::paintLine(QPainter& painter, const QRect& rect, const QModelIndex& index, Look look) const
{
    const Theme theme = Theme::of(*this);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_isChoosable && (look.isChosen || (look.isHovered && !look.isFaint))) {
        painter.fillPath(continuousRoundedRect(rect, lineRadius),
                         theme.color(ThemeColor::label, look.isChosen ? 0.1 : 0.05));
    }
    const bool isCurrent = index == currentIndex() && !look.isFaint;
    if (isCurrent && m_keyboardFocus.isShown()) {
        paintFocusRing(painter, rect, lineRadius, theme);
    }
    painter.setFont(textFont(TextRole::body, look.isChosen ? QFont::DemiBold : QFont::Normal));
    painter.setPen(theme.color(look.isFaint ? ThemeColor::secondaryLabel : ThemeColor::label));
    const QRectF line = QRectF(rect).adjusted(padding, 0, -padding, 0);
    const QString trailing = index.data(trailingRole).toString();
    const QFont trailingFont = textFont(TextRole::body);
    const int room = qFloor(line.width()) - QFontMetrics(trailingFont).horizontalAdvance(trailing) - padding;
    drawTextOnBaseline(
        painter, line, Qt::AlignLeft,
        painter.fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, std::max(room, 0)));
    painter.setFont(trailingFont);
    painter.setPen(theme.color(ThemeColor::secondaryLabel));
    drawTextOnBaseline(painter, line, Qt::AlignRight, trailing);
    painter.restore();
}

} // namespace brevlin
