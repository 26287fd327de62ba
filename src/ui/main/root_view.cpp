#include "ui/main/root_view.h"

#include "app/app_model.h"
#include "ui/controls/scroll_view.h"
#include "ui/controls/spoken_element.h"
#include "ui/main/absence_bar.h"
#include "ui/main/timer_dashboard_view.h"
#include "ui/main/top_bar.h"
#include "ui/main/undo_bar.h"
#include "ui/screens/about/about_view.h"
#include "ui/screens/history/history_view.h"
#include "ui/screens/settings/app_settings_view.h"
#include "ui/screens/statistics/statistics_view.h"
#include "ui/style/shapes.h"
#include "ui/style/text.h"
#include "ui/style/theme.h"

#include <QApplication>
#include <QPainter>
#include <QPainterPath>

#include <utility>

namespace brevlin {

namespace {

constexpr int absenceBarMargin = 24;
constexpr int absenceBarTop = 18;
constexpr int absenceBarGap = 8; // to where a screen's content is cut off as it scrolls

} // namespace

RootView::RootView(AppModel& model, SectionSelection& selection, QWidget* parent)
    : QWidget(parent)
    , m_model(model)
    , m_selection(selection)
    , m_topBar(new TopBar(model, selection, this))
    , m_absenceBar(new AbsenceBar(model, this))
    , m_undoBar(new UndoBar(model, UndoBar::Place::floating, this))
{
    // Holds the keyboard until Tab moves it: Qt would give it to the first button, which Space would then
    // press.
    setFocusPolicy(Qt::ClickFocus);
    setFocus();
    // Of a panel a screen reader would pick the texts of three words or more.
    makeSpokenGroup(
        *this, QAccessible::Section,
        [this] { return qtText(title(m_selection.section(), m_model.language())); },
        [this] { return readableText(*m_detail); });
    connect(m_absenceBar, &AbsenceBar::roomChanged, this, &RootView::layOut);
    connect(&selection, &SectionSelection::sectionChanged, this, &RootView::showSection);
    showSection();
}

void RootView::setCornerRadius(double radius)
{
    m_cornerRadius = radius;
    update();
}

void RootView::showSection()
{
    if (m_detail != nullptr && m_detail->isAncestorOf(QApplication::focusWidget())) {
        setFocus(Qt::OtherFocusReason); // or it would go to the window's buttons
    }
    delete m_detail;
    delete std::exchange(m_scroller, nullptr);
    switch (m_selection.section()) {
    case AppSection::timer:
        m_detail = new TimerDashboardView(m_model, this);
        break;
    case AppSection::history:
        makeHistory();
        break;
    case AppSection::statistics:
        makeStatistics();
        break;
    case AppSection::settings:
        m_detail = new AppSettingsView(m_model, this);
        break;
    case AppSection::about:
        m_detail = new AboutView(m_model, this);
        break;
    }
    layOut();
    m_detail->show();
}

void RootView::makeStatistics()
{
    auto* statistics = new StatisticsView(m_model, this);
    m_detail = statistics;
    // Later: the screen goes, and with it the row that was pressed.
    connect(statistics, &StatisticsView::filterRequested, &m_selection, &SectionSelection::showHistory,
            Qt::QueuedConnection);
}

void RootView::makeHistory()
{
    auto* history = new HistoryView(m_model, this);
    m_detail = history;
    if (const QString filter = m_selection.takeFilter(); !filter.isEmpty()) {
        history->setFilter(filter);
    }
}

void RootView::layOut()
{
    m_topBar->setGeometry(0, 0, width(), TopBar::barHeight);
    const QRect whole(0, TopBar::barHeight, width(), height() - TopBar::barHeight);
    const QRect room = roomBelow(whole);
    const QSize least = m_detail->minimumSizeHint();
    // Only a window that is shown has the size that it was given.
    if (m_scroller == nullptr && isVisible() &&
        (least.width() > room.width() || least.height() > room.height())) {
        scrollDetail();
    }
    QWidget* shown = m_scroller != nullptr ? static_cast<QWidget*>(m_scroller) : m_detail;
    shown->setGeometry(room);
    m_absenceBar->raise();
    m_undoBar->lieIn(room);
    m_undoBar->raise();
}

// What a question that stands leaves of the room. In a low window today's figures give way to it, too.
QRect RootView::roomBelow(const QRect& room)
{
    const bool isAsking = !m_absenceBar->isHidden();
    auto* dashboard = qobject_cast<TimerDashboardView*>(m_detail);
    QRect rest = room;
    if (isAsking) {
        const int width = room.width() - 2 * absenceBarMargin;
        const QRect card(room.x() + absenceBarMargin, room.y() + absenceBarTop, width,
                         m_absenceBar->heightFor(width));
        m_absenceBar->lieIn(card);
        rest.setTop(card.bottom() + 1 + (dashboard == nullptr ? absenceBarGap : 0));
    }
    if (dashboard != nullptr) {
        dashboard->setShowsToday(!isAsking || rest.height() >= dashboard->wholeHeight());
    }
    return rest;
}

void RootView::scrollDetail()
{
    m_scroller = new ScrollView(this);
    m_scroller->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_scroller->setHorizontalScrollBar(new SlimScrollBar(Qt::Horizontal, m_scroller));
    m_scroller->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    m_scroller->setWidget(m_detail);
    m_detail->setAutoFillBackground(false);
    m_scroller->show();
    m_detail->show();
}

void RootView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    layOut();
}

void RootView::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    layOut();
}

void RootView::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    const Theme theme = Theme::of(*this);
    const QRectF bar(0, 0, width(), TopBar::barHeight);
    if (m_cornerRadius > 0.0) {
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath outline;
        outline.addRoundedRect(rect(), m_cornerRadius, m_cornerRadius);
        painter.fillPath(outline, theme.color(ThemeColor::canvas));
        QPainterPath barOutline;
        barOutline.addRect(bar);
        painter.fillPath(outline.intersected(barOutline), theme.color(ThemeColor::windowBackground));
    } else {
        painter.fillRect(rect(), theme.color(ThemeColor::canvas));
        painter.fillRect(bar, theme.color(ThemeColor::windowBackground));
    }
    paintHairline(painter, bar, Qt::BottomEdge, theme.color(ThemeColor::cardBorder));
}

} // namespace brevlin
