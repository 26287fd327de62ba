#include "ui/main/timer_card.h"

#include "ui/timer/timer_control_row.h"
#include "ui/timer/timer_cycle_indicator.h"
#include "ui/timer/timer_ring_view.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace brevlin {

namespace {

constexpr TimerRingMetrics ringMetrics{252, 96, 54, 13};

/// One of the gaps from the card's top to its bottom; points. Whatever room is left beyond the wanted ones
/// goes to the flexible gaps in equal parts.
struct Gap
{
    double least;
    double wanted;
    bool isFlexible;
};

constexpr double padding = 48;
constexpr double itemSpacing = 22;
constexpr double leastSpacer = 12;
constexpr std::array gaps{
    Gap{11, padding, false},                                // above the cycle
    Gap{16, itemSpacing + leastSpacer + itemSpacing, true}, // to the ring
    Gap{17, itemSpacing, false},                            // to the controls
    Gap{12, itemSpacing + leastSpacer + padding, true},     // below them
};

double sum(double Gap::*length)
{
    double total = 0;
    for (const Gap& gap : gaps) {
        total += gap.*length;
    }
    return total;
}

} // namespace

TimerCard::TimerCard(AppModel& model, QWidget* parent)
    : QWidget(parent)
    , m_cycle(new TimerCycleIndicator(model, false, Qt::AlignHCenter, this))
    , m_ring(new TimerRingView(model, ringMetrics, this))
    , m_controls(new TimerControlRow(model, TimerControlStyle::mainWindow, this))
{
    m_ring->setBackdrop(ThemeColor::panelBackground); // of the card surface around this
}

QSize TimerCard::minimumSizeHint() const
{
    const int contents = m_cycle->sizeHint().height() + circleSide() + m_controls->sizeHint().height();
    return {m_ring->sizeHint().width(), contents + static_cast<int>(sum(&Gap::least))};
}

int TimerCard::circleSide() const
{
    return m_ring->sizeHint().height() - 2 * m_ring->overhang();
}

void TimerCard::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const int controlsHeight = m_controls->sizeHint().height();
    const double free = height() - m_cycle->sizeHint().height() - circleSide() - controlsHeight;
    const double least = sum(&Gap::least);
    const double wanted = sum(&Gap::wanted);
    const double share = std::clamp((free - least) / (wanted - least), 0.0, 1.0);
    const double surplus = std::max(free - wanted, 0.0) / 2;
    double y = 0;
    const auto pass = [&](const Gap& gap) {
        y += gap.least + (gap.wanted - gap.least) * share + (gap.isFlexible ? surplus : 0.0);
        return static_cast<int>(std::round(y));
    };
    const QSize cycle = m_cycle->sizeHint();
    m_cycle->setGeometry(0, pass(gaps[0]), width(), cycle.height());
    y += cycle.height();
    const QSize ring = m_ring->sizeHint();
    m_ring->setGeometry((width() - ring.width()) / 2, pass(gaps[1]) - m_ring->overhang(), ring.width(),
                        ring.height());
    y += circleSide();
    m_controls->setGeometry(0, pass(gaps[2]), width(), controlsHeight);
}

} // namespace brevlin
