#include "ui/screens/statistics/activity_card.h"

#include "ui/controls/form.h"
#include "ui/controls/spoken_element.h"
#include "ui/screens/statistics/activity_chart.h"
#include "ui/screens/statistics/granularity_row.h"
#include "ui/screens/statistics/statistics_texts.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <cmath>

namespace brevlin {

namespace {

constexpr int cardPadding = 18;
constexpr int partGap = 18;
constexpr int headerGap = 16;
constexpr int titleGap = 3;
constexpr int insightGap = 11;
constexpr int insightTextGap = 2;
constexpr int insightSymbolSize = 18;
constexpr int insightSymbolColumn = 22;
constexpr int streakSymbolSize = 14;
constexpr int streakGap = 5;

/// Two lines above each other, as one layout; the second one wraps where it must.
QVBoxLayout* stacked(FormLabel* title, FormLabel* detail, int gap)
{
    auto* lines = new QVBoxLayout;
    lines->setSpacing(gap);
    lines->addWidget(title);
    lines->addWidget(detail);
    detail->setWordWrap(true);
    return lines;
}

/// How much lower a line must begin whose baseline is to be that of a larger font.
int baselineOffset(const QFont& larger, const QFont& smaller)
{
    return static_cast<int>(std::round(QFontMetricsF(larger).ascent() - QFontMetricsF(smaller).ascent()));
}

} // namespace

ActivityCard::ActivityCard(QWidget* parent)
    : CardSurface(cardPadding, parent)
    , m_title(new FormLabel(textFont(TextRole::headline, QFont::DemiBold), ThemeColor::label, this))
    , m_subtitle(new FormLabel(textFont(TextRole::callout), ThemeColor::secondaryLabel, this))
    , m_total(new FormLabel(textFont(TextRole::callout, QFont::Medium), ThemeColor::secondaryLabel, this))
    , m_chart(new ActivityChart(this))
    , m_insightSymbol(new SymbolView(Symbol::scope, insightSymbolSize, ThemeColor::focus, this))
    , m_insightTitle(new FormLabel(textFont(TextRole::body, QFont::DemiBold), ThemeColor::label, this))
    , m_insightDetail(new FormLabel(textFont(TextRole::callout), ThemeColor::secondaryLabel, this))
    , m_streakSymbol(new SymbolView(Symbol::flameFill, streakSymbolSize, ThemeColor::orange, this))
    , m_streak(new FormLabel(textFont(TextRole::callout, QFont::Medium), ThemeColor::orange, this))
{
    makeSpokenGroup(*this, QAccessible::Grouping, [this] { return m_title->text(); });
    makeSpokenElement(*m_title, QAccessible::Heading, [this] { return m_title->text(); });

    auto* header = new QHBoxLayout;
    header->setSpacing(headerGap);
    header->addLayout(stacked(m_title, m_subtitle, titleGap), 1);
    auto* total = new QVBoxLayout;
    total->setContentsMargins(0, baselineOffset(m_title->font(), m_total->font()), 0, 0);
    total->addWidget(m_total, 0, Qt::AlignTop);
    total->addStretch(1);
    header->addLayout(total);

    auto* streak = new QHBoxLayout;
    streak->setSpacing(streakGap);
    streak->addWidget(m_streakSymbol);
    streak->addWidget(m_streak);

    auto* insightRow = new QHBoxLayout;
    insightRow->setSpacing(insightGap);
    auto* symbolColumn = new QHBoxLayout;
    symbolColumn->addStrut(0);
    symbolColumn->addWidget(m_insightSymbol);
    m_insightSymbol->setFixedSize(insightSymbolSize, insightSymbolSize);
    symbolColumn->setContentsMargins((insightSymbolColumn - insightSymbolSize) / 2, 0,
                                     (insightSymbolColumn - insightSymbolSize) / 2, 0);
    insightRow->addLayout(symbolColumn);
    insightRow->addLayout(stacked(m_insightTitle, m_insightDetail, insightTextGap), 1);
    insightRow->addLayout(streak);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(partGap);
    column->addLayout(header);
    column->addWidget(m_chart);
    column->addLayout(insightRow);
}

void ActivityCard::show(const ActivityInput& input, std::int64_t currentStreak)
{
    const PeriodStatistics& statistics = input.statistics;
    const AppLanguage language = input.language;
    m_title->setText(qtText(granularityRow(statistics.granularity).activityTitle.in(language)));
    m_subtitle->setText(activitySubtitle(statistics, language));
    m_total->setText(qtText(BilingualText{"共 ", "Total "}.in(language)) +
                     focusDurationText(statistics.totalFocusMinutes, language));
    m_total->setVisible(statistics.totalFocusMinutes >= 1);
    m_chart->show(input);

    const std::optional<FocusTimeBucket> best = bestBucket(statistics);
    const Insight said = insight(statistics, best, input.calendar, language);
    m_insightSymbol->setSymbol(best ? Symbol::scope : Symbol::sparkles);
    m_insightTitle->setText(said.title);
    m_insightDetail->setText(said.detail);
    m_chart->setAccessibleDescription(said.title);
    m_streakSymbol->setVisible(currentStreak > 0);
    m_streak->setVisible(currentStreak > 0);
    m_streak->setText(streakText(currentStreak, language));
}

} // namespace brevlin
