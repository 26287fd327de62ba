#include "ui/main/timer_dashboard_view.h"

#include "ui/main/timer_control_row.h"
#include "ui/main/timer_cycle_indicator.h"
#include "ui/main/timer_ring_view.h"
#include "ui/main/today_strip.h"
#include "ui/style/card_surface.h"

#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr int screenPadding = 24;
constexpr int cardSpacing = 18;
constexpr int timerCardPadding = 48;
constexpr int timerItemSpacing = 22;
constexpr int leastSpacer = 12;
constexpr TimerRingMetrics ringMetrics{252, 96, 54, 13};

QSpacerItem* flexibleSpacer()
{
    return new QSpacerItem(0, leastSpacer, QSizePolicy::Minimum, QSizePolicy::Expanding);
}

} // namespace

TimerDashboardView::TimerDashboardView(AppModel& model, QWidget* parent) : QWidget(parent)
{
    auto* strip = new CardSurface(0, this);
    auto* stripLayout = new QVBoxLayout(strip);
    stripLayout->setContentsMargins(0, 0, 0, 0);
    stripLayout->addWidget(new TodayStrip(model, strip));

    auto* timer = new CardSurface(timerCardPadding, this);
    auto* timerLayout = new QVBoxLayout(timer);
    timerLayout->setSpacing(timerItemSpacing);
    timerLayout->addWidget(new TimerCycleIndicator(model, false, Qt::AlignHCenter, timer));
    timerLayout->addItem(flexibleSpacer());
    timerLayout->addWidget(new TimerRingView(model, ringMetrics, timer), 0, Qt::AlignHCenter);
    timerLayout->addWidget(new TimerControlRow(model, TimerControlStyle::mainWindow, timer));
    timerLayout->addItem(flexibleSpacer());

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(screenPadding, screenPadding, screenPadding, screenPadding);
    column->setSpacing(cardSpacing);
    column->addWidget(strip);
    column->addWidget(timer, 1);
}

} // namespace brevlin
