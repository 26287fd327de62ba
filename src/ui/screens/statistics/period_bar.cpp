#include "ui/screens/statistics/period_bar.h"

#include "ui/controls/form.h"
#include "ui/controls/link_button.h"
#include "ui/controls/numeric_text.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/spoken_element.h"
#include "ui/controls/symbol_button.h"
#include "ui/screens/statistics/granularity_row.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace brevlin {

namespace {

constexpr int itemGap = 8;
constexpr int leastHeight = 32;
constexpr int leastTitleWidth = 190;
constexpr int titleGap = 1;
constexpr int pickerWidth = 218;

constexpr auto& granularities = RawValues<StatisticsGranularity>::cases;

void setName(SymbolButton& button, const BilingualText& prefix, const QString& granularity,
             AppLanguage language)
{
    const QString name = qtText(prefix.in(language)) + granularity;
    button.setText(name);
    button.setToolTip(name);
}

} // namespace

PeriodBar::PeriodBar(QWidget* parent)
    : QWidget(parent)
    , m_previous(new SymbolButton(Symbol::chevronLeft, this))
    , m_title(new NumericText(textFont(TextRole::headline, QFont::DemiBold), this))
    , m_detail(new FormLabel(textFont(TextRole::caption), ThemeColor::secondaryLabel, this))
    , m_next(new SymbolButton(Symbol::chevronRight, this))
    , m_today(new LinkButton(this))
    , m_picker(new SegmentedPicker(static_cast<int>(granularities.size()), this))
{
    makeSpokenGroup(*this, QAccessible::Grouping, [this] { return m_title->text(); });
    auto* texts = new QWidget(this);
    texts->setMinimumWidth(leastTitleWidth);
    auto* lines = new QVBoxLayout(texts);
    lines->setContentsMargins(0, 0, 0, 0);
    lines->setSpacing(titleGap);
    lines->addWidget(m_title);
    lines->addWidget(m_detail);
    m_title->setBackdrop(ThemeColor::canvas);

    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(itemGap);
    row->addStrut(leastHeight);
    row->addWidget(m_previous);
    row->addWidget(texts);
    row->addWidget(m_next);
    row->addWidget(m_today);
    row->addStretch(1);
    row->addWidget(m_picker);
    texts->stackUnder(m_next); // is read in the order in which it is seen
    m_picker->setTint(ThemeColor::focus);
    m_picker->setFixedWidth(pickerWidth);

    connect(m_previous, &QAbstractButton::clicked, this, [this] { Q_EMIT moveRequested(-1); });
    connect(m_next, &QAbstractButton::clicked, this, [this] { Q_EMIT moveRequested(1); });
    connect(m_today, &QAbstractButton::clicked, this, &PeriodBar::todayRequested);
    connect(m_picker, &SegmentedPicker::chosen, this, [this](int index) {
        Q_EMIT granularityChosen(granularities.at(static_cast<std::size_t>(index)).first);
    });
}

void PeriodBar::show(StatisticsGranularity granularity, const QString& title, AppLanguage language)
{
    const GranularityRow& kind = granularityRow(granularity);
    const QString name = qtText(kind.title.in(language));
    setName(*m_previous, {"上一个", "Previous "}, name, language);
    setName(*m_next, {"下一个", "Next "}, name, language);
    if (isVisible() && title != m_title->text()) {
        announce(*this, title);
    }
    m_title->setText(title);
    m_detail->setText(qtText(kind.detail.in(language)));
    m_today->setText(qtText(BilingualText{"回到今天", "Today"}.in(language)));

    QStringList shortTitles;
    QStringList titles;
    for (const auto& each : granularities) {
        shortTitles << qtText(granularityRow(each.first).shortTitle.in(language));
        titles << qtText(granularityRow(each.first).title.in(language));
    }
    m_picker->setTexts(shortTitles);
    m_picker->setNames(titles);
    m_picker->setAccessibleName(qtText(BilingualText{"统计粒度", "Statistics period"}.in(language)));
    m_picker->setCurrentIndex(static_cast<int>(granularity));
}

void PeriodBar::setPlaceInTime(bool containsNow, bool mayMoveOn)
{
    const bool takesKeyboard = (m_next->hasFocus() && !mayMoveOn) || (m_today->hasFocus() && containsNow);
    if (takesKeyboard) {
        m_previous->setFocus(Qt::TabFocusReason);
    }
    m_next->setEnabled(mayMoveOn);
    m_today->setVisible(!containsNow);
}

} // namespace brevlin
