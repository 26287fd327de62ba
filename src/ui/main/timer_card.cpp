#include "ui/main/timer_card.h"

#include "ui/timer/intention_field.h"
#include "ui/timer/timer_control_row.h"
#include "ui/timer/timer_cycle_indicator.h"
#include "ui/timer/timer_ring_view.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace brevlin {

namespace {

constexpr double largestCircle = 252;
constexpr double smallestCircle = 200;
constexpr int intentionWidth = 400;

TimerRingMetrics ringMetrics(double diameter)
{
    const double scale = diameter / largestCircle;
    return {diameter, 96 * scale, 54 * scale, 13 * scale};
}

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
    Gap{13, itemSpacing, false},                            // to what the phase is for
    Gap{7, 15, false},                                      // to the controls
    Gap{12, leastSpacer + padding, true},                   // below them
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
    , m_ring(new TimerRingView(model, ringMetrics(largestCircle), this))
    , m_intention(new IntentionField(model, this))
    , m_controls(new TimerControlRow(model, TimerControlStyle::mainWindow, this))
{
    m_ring->setBackdrop(ThemeColor::panelBackground); // of the card surface around this
}

QSize TimerCard::minimumSizeHint() const
{
    const int circle = static_cast<int>(smallestCircle);
    return {circle + 2 * m_ring->overhang(), heightBeside() + circle + static_cast<int>(sum(&Gap::least))};
}

// Of all but the circle and the gaps.
int TimerCard::heightBeside() const
{
    return m_cycle->sizeHint().height() + m_intention->sizeHint().height() + m_controls->sizeHint().height();
}

void TimerCard::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const double least = sum(&Gap::least);
    const double wanted = sum(&Gap::wanted);
    const double room = height() - heightBeside();
    const double circle = std::clamp(std::floor(room - least), smallestCircle, largestCircle);
    m_ring->setMetrics(ringMetrics(circle));
    const double free = room - circle;
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
    y += circle;
    const int intention = std::min(intentionWidth, width() - 2 * static_cast<int>(padding));
    const int intentionHeight = m_intention->sizeHint().height();
    m_intention->setGeometry((width() - intention) / 2, pass(gaps[2]), intention, intentionHeight);
    y += intentionHeight;
    m_controls->setGeometry(0, pass(gaps[3]), width(), m_controls->sizeHint().height());
}

} // namespace brevlin
