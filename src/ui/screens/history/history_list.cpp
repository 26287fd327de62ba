#include "ui/screens/history/history_list.h"

#include "app/app_model.h"
#include "ui/controls/card_surface.h"
#include "ui/controls/menu_look.h"
#include "ui/controls/scroll_view.h"
#include "ui/controls/spoken_element.h"
#include "ui/screens/history/history_list_accessible.h"
#include "ui/style/text.h"

#include <QContextMenuEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace brevlin {

namespace {

constexpr int sidePadding = 24;
constexpr int rightPadding = sidePadding - SlimScrollBar::thickness; // the bar stands in the rest of it
constexpr int scrollStep = 24;
constexpr BilingualText deleteText{"删除记录", "Delete"};
constexpr BilingualText editText{"编辑…", "Edit…"};
constexpr BilingualText addText{"添加记录…", "Add Record…"};
constexpr BilingualText listName{"记录", "History"};

QString deleteSeveralText(std::size_t count, AppLanguage language)
{
    const QString number = QString::number(count);
    return language == AppLanguage::english ? QStringLiteral("Delete %1 Records").arg(number)
                                            : QStringLiteral("删除 %1 条记录").arg(number);
}

Calendar calendarOf(const AppModel& model)
{
    return {model.calendar().timeZone(), std::string{localeIdentifier(model.language())}};
}

} // namespace

HistoryList::HistoryList(AppModel& model, QWidget* parent)
    : QAbstractScrollArea(parent), m_model(model), m_calendar(calendarOf(model))
{
    installHistoryAccessibility();
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    setVerticalScrollBar(new SlimScrollBar(Qt::Vertical, this));
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    viewport()->setMouseTracking(true);
    verticalScrollBar()->setSingleStep(scrollStep);
    refresh();
}

void HistoryList::refresh()
{
    m_calendar = calendarOf(m_model);
    m_layout = HistoryLayout(HistoryDays(m_model.sessions(), m_calendar, m_filter));
    setAccessibleName(qtText(listName.in(m_model.language())));
    m_hoveredRow.reset();
    std::erase_if(m_chosen, [this](const Uuid& id) { return m_model.historyEditor().find(id) == nullptr; });
    const auto before = m_anchor;
    updateScrollRange();
    if (m_currentRow) {
        // The row of a record that was deleted goes to the one that has moved up.
        const auto same = rowOf(m_currentRecord);
        m_currentRow =
            same || rowCount() == 0 ? same : std::optional{std::min(*m_currentRow, rowCount() - 1)};
        if (m_currentRow && !same) {
            m_currentRecord = record(*m_currentRow).id;
            m_pivotRow = *m_currentRow;
            m_chosen = {m_currentRecord};
            if (hasFocus()) {
                announce(*this, spokenText(*m_currentRow));
            }
        }
    }
    // At the top what is new comes into view; anywhere else nothing moves under the reader's eyes.
    const auto row = before && verticalScrollBar()->value() > 0 ? rowOf(before->record) : std::nullopt;
    if (row) {
        verticalScrollBar()->setValue(m_layout.rowTop(*row) - before->distance);
    }
    rememberAnchor();
    viewport()->update();
}

void HistoryList::updateScrollRange()
{
    verticalScrollBar()->setRange(0, std::max(0, m_layout.height() - viewport()->height()));
    verticalScrollBar()->setPageStep(viewport()->height());
}

const SessionRecord& HistoryList::record(std::size_t row) const
{
    return m_model.sessions()[m_layout.recordIndex(row)];
}

QRect HistoryList::rowRect(std::size_t row) const
{
    return {sidePadding, m_layout.rowTop(row) - verticalScrollBar()->value(),
            viewport()->width() - sidePadding - rightPadding, HistoryLayout::rowHeight};
}

QRect HistoryList::headingRect(std::size_t day) const
{
    return {sidePadding, m_layout.cardTop(day) - verticalScrollBar()->value(),
            viewport()->width() - sidePadding - rightPadding, HistoryLayout::headerHeight};
}

std::optional<std::size_t> HistoryList::rowAt(const QPoint& position) const
{
    const bool isOnCard = position.x() >= sidePadding && position.x() < viewport()->width() - rightPadding;
    return isOnCard ? m_layout.rowAt(position.y() + verticalScrollBar()->value()) : std::nullopt;
}

std::optional<std::size_t> HistoryList::rowOf(const Uuid& id) const
{
    for (std::size_t row = 0; row < rowCount(); ++row) {
        if (record(row).id == id) {
            return row;
        }
    }
    return std::nullopt;
}

// The model's list changes as a whole, and only the identifiers tell afterwards what was where.
void HistoryList::rememberAnchor()
{
    const int top = verticalScrollBar()->value();
    const auto row = m_layout.firstRowBelow(top);
    m_anchor = row ? std::optional{Anchor{record(*row).id, m_layout.rowTop(*row) - top}} : std::nullopt;
}

void HistoryList::scrollContentsBy(int /*dx*/, int /*dy*/)
{
    rememberAnchor();
    setHoveredRow(rowAt(viewport()->mapFromGlobal(QCursor::pos())));
    viewport()->update();
}

void HistoryList::showRow(std::size_t row)
{
    const QRect place = rowRect(row);
    constexpr int margin = HistoryLayout::headerHeight;
    if (place.top() < margin) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + place.top() - margin);
    } else if (place.bottom() > viewport()->height()) {
        verticalScrollBar()->setValue(verticalScrollBar()->value() + place.bottom() - viewport()->height() +
                                      HistoryLayout::bottomPadding / 2);
    }
}

void HistoryList::setFilter(HistoryFilter filter)
{
    m_filter = std::move(filter);
    m_chosen.clear();
    m_currentRow.reset();
    m_anchor.reset();
    refresh();
    verticalScrollBar()->setValue(0);
}

HistoryList::Reach HistoryList::reachOf(Qt::KeyboardModifiers modifiers)
{
    return (modifiers & Qt::ShiftModifier) != 0     ? Reach::extended
           : (modifiers & Qt::ControlModifier) != 0 ? Reach::toggled
                                                    : Reach::one;
}

void HistoryList::setCurrentRow(std::size_t row)
{
    moveTo(row, Reach::one);
}

void HistoryList::moveTo(std::size_t row, Reach reach)
{
    m_currentRow = row;
    m_currentRecord = record(row).id;
    if (reach == Reach::toggled) {
        if (m_chosen.erase(m_currentRecord) == 0) {
            m_chosen.insert(m_currentRecord);
        }
    } else {
        m_chosen.clear();
        m_pivotRow = reach == Reach::one ? row : std::min(m_pivotRow, rowCount() - 1);
        for (std::size_t each = std::min(row, m_pivotRow); each <= std::max(row, m_pivotRow); ++each) {
            m_chosen.insert(record(each).id);
        }
    }
    if (reach == Reach::toggled) {
        m_pivotRow = row;
    }
    showRow(row);
    viewport()->update();
    tellFocusedHistoryRow(*this, row);
}

void HistoryList::setHoveredRow(std::optional<std::size_t> row)
{
    if (std::exchange(m_hoveredRow, row) != row) {
        viewport()->update();
    }
}

QString HistoryList::spokenText(std::size_t row) const
{
    const AppLanguage language = m_model.language();
    const SessionDetails& details = m_model.historyEditor().detailsOf(record(row).id);
    return qtText(spokenHistoryRow(historyRowTexts(record(row), details, m_calendar, language), language));
}

QString HistoryList::spokenHeading(std::size_t day) const
{
    return qtText(spokenHistoryDay(days()[day], m_calendar, m_model.language()));
}

void HistoryList::paintEvent(QPaintEvent* event)
{
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect visible = event->rect();
    const int top = verticalScrollBar()->value() + visible.top();
    const int bottom = verticalScrollBar()->value() + visible.bottom() + HistoryLayout::cardSpacing;
    for (std::size_t day = m_layout.firstDayBelow(top);
         day < m_layout.days().size() && m_layout.cardTop(day) <= bottom; ++day) {
        paintDay(painter, day, visible);
    }
}

void HistoryList::paintDay(QPainter& painter, std::size_t index, const QRect& visible)
{
    const Theme theme = Theme::of(*this);
    const HistoryDay& day = m_layout.days()[index];
    const QRect card(sidePadding, m_layout.cardTop(index) - verticalScrollBar()->value(),
                     viewport()->width() - sidePadding - rightPadding, m_layout.cardHeight(index));
    m_painter.paintCard(painter, card, visible, theme);
    const QRect header(card.topLeft(), QSize(card.width(), HistoryLayout::headerHeight));
    if (header.intersects(visible)) {
        m_painter.paintHeader(painter, header, qtText(historyDateText(day, m_calendar)),
                              qtText(historySummaryText(day, m_model.language())), theme);
    }
    const int above = std::max(0, visible.top() - header.bottom()) / HistoryLayout::rowHeight;
    for (auto within = static_cast<std::size_t>(above); within < day.count; ++within) {
        const std::size_t row = day.first + within;
        const QRect place = rowRect(row);
        if (place.top() > visible.bottom()) {
            break;
        }
        const HistoryRowState state{row == m_hoveredRow,
                                    row == m_menuRow || (m_chosen.size() > 1 && isChosen(row)) ||
                                        (row == m_currentRow && hasFocus() && isChosen(row)),
                                    row == m_currentRow && m_keyboardFocus.isShown(),
                                    within + 1 == day.count};
        m_painter.paintRow(painter, place, record(row),
                           historyRowTexts(record(row), m_model.historyEditor().detailsOf(record(row).id),
                                           m_calendar, m_model.language()),
                           state, theme);
    }
}

void HistoryList::resizeEvent(QResizeEvent* event)
{
    QAbstractScrollArea::resizeEvent(event);
    updateScrollRange();
    rememberAnchor();
}

bool HistoryList::viewportEvent(QEvent* event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
        setHoveredRow(rowAt(static_cast<QMouseEvent*>(event)->position().toPoint()));
        break;
    case QEvent::Leave:
        setHoveredRow(std::nullopt);
        break;
    case QEvent::MouseButtonPress: {
        const auto* press = static_cast<QMouseEvent*>(event);
        if (const auto row = rowAt(press->position().toPoint())) {
            // A menu is about all that are chosen.
            if (press->button() == Qt::LeftButton || !isChosen(*row)) {
                moveTo(*row, reachOf(press->modifiers()));
            }
        }
        break;
    }
    case QEvent::MouseButtonDblClick:
        if (const auto row = rowAt(static_cast<QMouseEvent*>(event)->position().toPoint())) {
            Q_EMIT editRequested(record(*row).id);
        }
        break;
    default:
        break;
    }
    return QAbstractScrollArea::viewportEvent(event);
}

void HistoryList::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Insert) {
        Q_EMIT additionRequested();
    } else if (rowCount() == 0 || !followKey(*event)) {
        QAbstractScrollArea::keyPressEvent(event);
    }
}

bool HistoryList::followKey(const QKeyEvent& event)
{
    const std::size_t last = rowCount() - 1;
    const auto page =
        static_cast<std::size_t>(std::max(1, viewport()->height() / HistoryLayout::rowHeight - 1));
    const std::size_t row = m_currentRow.value_or(0);
    const bool isMenuKey =
        event.key() == Qt::Key_Menu || (event.key() == Qt::Key_F10 && event.modifiers() == Qt::ShiftModifier);
    if (isMenuKey) {
        showRow(row);
        openMenu(row, viewport()->mapToGlobal(rowRect(row).center()));
        return true;
    }
    if (event.matches(QKeySequence::SelectAll)) {
        chooseAll();
        return true;
    }
    const Reach reach = (event.modifiers() & Qt::ShiftModifier) != 0 ? Reach::extended : Reach::one;
    switch (event.key()) {
    case Qt::Key_Down:
        moveTo(m_currentRow ? std::min(row + 1, last) : 0, reach);
        break;
    case Qt::Key_Up:
        moveTo(row > 0 ? row - 1 : 0, reach);
        break;
    case Qt::Key_PageDown:
        moveTo(std::min(row + page, last), reach);
        break;
    case Qt::Key_PageUp:
        moveTo(row > page ? row - page : 0, reach);
        break;
    case Qt::Key_Home:
        moveTo(0, reach);
        verticalScrollBar()->setValue(0);
        break;
    case Qt::Key_End:
        moveTo(last, reach);
        break;
    case Qt::Key_Delete:
        deleteChosen();
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (m_currentRow) {
            Q_EMIT editRequested(record(row).id);
        }
        break;
    default:
        return false;
    }
    return true;
}

void HistoryList::chooseAll()
{
    for (std::size_t row = 0; row < rowCount(); ++row) {
        m_chosen.insert(record(row).id);
    }
    viewport()->update();
}

// From the menu key Qt sends this event too; that key is served with the row's own place above.
void HistoryList::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() != QContextMenuEvent::Mouse) {
        return;
    }
    if (const auto row = rowAt(viewport()->mapFromGlobal(event->globalPos()))) {
        openMenu(*row, event->globalPos());
    }
}

void HistoryList::openMenu(std::size_t row, const QPoint& globalPosition)
{
    if (!isChosen(row)) {
        setCurrentRow(row);
    }
    m_menuRow = row;
    viewport()->update();
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const AppLanguage language = m_model.language();
    // The list may change while the menu is open.
    const std::vector<Uuid> concerned = chosen();
    if (concerned.size() == 1) {
        connect(menu->addAction(qtText(editText.in(language))), &QAction::triggered, this,
                [this, id = concerned.front()] { Q_EMIT editRequested(id); });
    }
    connect(menu->addAction(qtText(addText.in(language))), &QAction::triggered, this,
            &HistoryList::additionRequested);
    menu->addSeparator();
    QAction* deletion =
        menu->addAction(concerned.size() == 1 ? qtText(deleteText.in(language))
                                              : deleteSeveralText(concerned.size(), language));
    markDestructive(*deletion);
    connect(deletion, &QAction::triggered, this,
            [this, concerned] { m_model.historyEditor().remove(concerned); });
    connect(menu, &QMenu::aboutToHide, this, [this] {
        m_menuRow.reset();
        viewport()->update();
    });
    menu->popup(globalPosition);
}

std::vector<Uuid> HistoryList::chosen() const
{
    return {m_chosen.begin(), m_chosen.end()};
}

void HistoryList::deleteChosen()
{
    if (!m_chosen.empty()) {
        m_model.historyEditor().remove(chosen());
    }
}

void HistoryList::focusInEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusInEvent(event);
    m_keyboardFocus.focusGained(*event);
    if (m_keyboardFocus.isShown() && !m_currentRow && rowCount() > 0) {
        setCurrentRow(0);
    }
    // After the list itself, which Qt tells of next.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (m_currentRow) {
                tellFocusedHistoryRow(*this, *m_currentRow);
            }
        },
        Qt::QueuedConnection);
    viewport()->update();
}

void HistoryList::focusOutEvent(QFocusEvent* event)
{
    QAbstractScrollArea::focusOutEvent(event);
    m_keyboardFocus.focusLost(*event);
    viewport()->update();
}

} // namespace brevlin
