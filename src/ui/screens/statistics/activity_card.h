#pragma once

#include "ui/controls/card_surface.h"
#include "ui/screens/statistics/activity_picture.h"

#include <cstdint>

namespace brevlin {

class ActivityChart;
class FormLabel;
class SymbolView;

/// The chart of a period between what it is about and what it shows.
class ActivityCard final : public CardSurface
{
    Q_OBJECT

public:
    explicit ActivityCard(QWidget* parent = nullptr);

    void show(const ActivityInput& input, std::int64_t currentStreak);
    using QWidget::show;

private:
    FormLabel* m_title; // these are owned by this widget
    FormLabel* m_subtitle;
    FormLabel* m_total;
    ActivityChart* m_chart;
    SymbolView* m_insightSymbol;
    FormLabel* m_insightTitle;
    FormLabel* m_insightDetail;
    SymbolView* m_streakSymbol;
    FormLabel* m_streak;
};

} // namespace brevlin
