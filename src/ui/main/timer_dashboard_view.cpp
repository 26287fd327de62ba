#include "ui/main/timer_dashboard_view.h"

#include "app/app_model.h"
#include "ui/controls/card_surface.h"
#include "ui/controls/spoken_element.h"
#include "ui/main/timer_card.h"
#include "ui/main/today_strip.h"
#include "ui/style/text.h"

#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr int screenPadding = 24;
constexpr int cardSpacing = 18;
constexpr BilingualText todayText{"今日", "Today"};
constexpr BilingualText timerText{"计时", "Timer"};

} // namespace

TimerDashboardView::TimerDashboardView(AppModel& model, QWidget* parent)
    : QWidget(parent), m_today(new CardSurface(0, this))
{
    auto* stripLayout = new QVBoxLayout(m_today);
    stripLayout->setContentsMargins(0, 0, 0, 0);
    stripLayout->addWidget(new TodayStrip(model, m_today));

    // The timer keeps its own padding, which gives way in a low window.
    auto* timer = new CardSurface(0, this);
    auto* timerLayout = new QVBoxLayout(timer);
    timerLayout->setContentsMargins(0, 0, 0, 0);
    timerLayout->addWidget(new TimerCard(model, timer));

    const auto name = [&model](CardSurface* card, const BilingualText& text) {
        makeSpokenGroup(*card, QAccessible::Grouping,
                        [&model, text] { return qtText(text.in(model.language())); });
    };
    name(m_today, todayText);
    name(timer, timerText);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(screenPadding, screenPadding, screenPadding, screenPadding);
    column->setSpacing(cardSpacing);
    column->addWidget(m_today);
    column->addWidget(timer, 1);
}

int TimerDashboardView::wholeHeight()
{
    if (!m_today->isHidden()) {
        m_wholeHeight = layout()->totalMinimumSize().height();
    }
    return m_wholeHeight;
}

void TimerDashboardView::setShowsToday(bool shows)
{
    m_today->setVisible(shows);
}

} // namespace brevlin
