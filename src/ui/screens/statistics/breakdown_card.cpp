#include "ui/screens/statistics/breakdown_card.h"

#include "ui/controls/form.h"
#include "ui/controls/link_button.h"
#include "ui/controls/segmented_picker.h"
#include "ui/controls/spoken_element.h"
#include "ui/screens/statistics/breakdown_row.h"
#include "ui/style/text.h"
#include "ui/style/typography.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace brevlin {

namespace {

constexpr int cardPadding = 18;
constexpr int headerGap = 16;
constexpr int partGap = 8;
constexpr std::size_t fewRows = 8;

constexpr BilingualText titleText{"时间去向", "Where the time went"};
constexpr BilingualText groupingText{"分组方式", "Grouping"};
constexpr BilingualText byIntentionText{"按内容", "By intention"};
constexpr BilingualText byLabelText{"按标签", "By label"};
constexpr BilingualText overlapText{
    "有多个标签的番茄会计入每一个标签，因此合计可能更多。",
    "A Pomodoro with several labels counts under each, so they may add up to more."};
constexpr BilingualText noLabelText{"内容中以 # 开头的词是标签，例如 #写作。",
                                    "Words of an intention that begin with # are labels, such as #writing."};
constexpr BilingualText allText{"全部显示", "Show all"};
constexpr BilingualText fewerText{"收起", "Show fewer"};

} // namespace

BreakdownCard::BreakdownCard(QWidget* parent)
    : CardSurface(cardPadding - BreakdownRow::bleed, parent)
    , m_title(new FormLabel(textFont(TextRole::headline, QFont::DemiBold), ThemeColor::label, this))
    , m_picker(new SegmentedPicker(2, this))
    , m_list(new QWidget(this))
    , m_note(new FormNote(Symbol::none, ThemeColor::secondaryLabel, this))
    , m_all(new LinkButton(this))
{
    makeSpokenGroup(*this, QAccessible::Grouping, [this] { return m_title->text(); });
    makeSpokenElement(*m_title, QAccessible::Heading, [this] { return m_title->text(); });
    makeSpokenGroup(*m_list, QAccessible::List, [this] { return m_title->text(); });
    // The rows reach into the padding, so that their texts stand below the title.
    constexpr int inset = BreakdownRow::bleed;
    auto* header = new QHBoxLayout;
    header->setContentsMargins(inset, inset, inset, 0);
    header->setSpacing(headerGap);
    header->addWidget(m_title, 1);
    header->addWidget(m_picker);
    auto* footer = new QHBoxLayout;
    footer->setContentsMargins(inset, 0, inset - LinkButton::bleed, 0);
    footer->addWidget(m_note, 1);
    footer->addStretch(0);
    footer->addWidget(m_all);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, inset);
    column->setSpacing(partGap);
    column->addLayout(header);
    column->addWidget(m_list);
    column->addLayout(footer);
    connect(m_picker, &SegmentedPicker::chosen, this, [this](int index) {
        m_grouping = index == 0 ? FocusGrouping::intention : FocusGrouping::label;
        Q_EMIT groupingChosen(m_grouping);
    });
    connect(m_all, &QAbstractButton::clicked, this, [this] {
        m_showsAll = !m_showsAll;
        refresh();
    });
}

void BreakdownCard::show(const FocusBreakdown& breakdown, AppLanguage language)
{
    m_breakdown = breakdown;
    m_language = language;
    refresh();
}

// The phases without a name stand last, also below the few longest.
std::vector<std::size_t> BreakdownCard::shownGroups() const
{
    const auto& groups = m_breakdown.groups;
    std::vector<std::size_t> shown(groups.size());
    std::iota(shown.begin(), shown.end(), std::size_t{0});
    if (!m_showsAll && shown.size() > fewRows) {
        const std::size_t last = groups.back().name.empty() ? shown.back() : fewRows - 1;
        shown.resize(fewRows);
        shown.back() = last;
    }
    return shown;
}

void BreakdownCard::refresh()
{
    const auto text = [this](const BilingualText& both) {
        return qtText(both.in(m_language));
    };
    m_title->setText(text(titleText));
    m_picker->setTexts({text(byIntentionText), text(byLabelText)});
    m_picker->setAccessibleName(text(groupingText));
    m_picker->setCurrentIndex(m_grouping == FocusGrouping::intention ? 0 : 1);
    showRows();
    showNote();
    m_all->setText(text(m_showsAll ? fewerText : allText));
    m_all->setVisible(m_breakdown.groups.size() > fewRows);
}

void BreakdownCard::showRows()
{
    m_shown = shownGroups();
    addRows(m_shown.size());
    std::vector<BreakdownTexts> texts;
    BreakdownColumns columns;
    for (const std::size_t group : m_shown) {
        texts.push_back(breakdownTexts(m_breakdown.groups[group], m_grouping, m_language));
        columns.fit(texts.back());
    }
    for (std::size_t index = 0; index < m_rows.size(); ++index) {
        BreakdownRow& row = *m_rows[index];
        if (index < m_shown.size()) {
            row.show(texts[index], columns, m_breakdown.groups[m_shown[index]].share);
        } else if (row.hasFocus()) {
            m_picker->setFocus(Qt::OtherFocusReason);
        }
        row.setVisible(index < m_shown.size());
    }
    m_list->setFixedHeight(static_cast<int>(m_shown.size()) * BreakdownRow::rowHeight);
    placeRows();
    keepOneStop();
}

// Without a layout, which would be asked anew for each of thousands of rows that are shown at once.
void BreakdownCard::placeRows()
{
    for (std::size_t index = 0; index < m_shown.size(); ++index) {
        m_rows[index]->setGeometry(0, static_cast<int>(index) * BreakdownRow::rowHeight, m_list->width(),
                                   BreakdownRow::rowHeight);
    }
}

void BreakdownCard::resizeEvent(QResizeEvent* event)
{
    CardSurface::resizeEvent(event);
    layout()->activate();
    placeRows();
}

// One stop of Tab, where the keyboard was last.
void BreakdownCard::keepOneStop()
{
    const auto isStop = [](const BreakdownRow* row) {
        return row->focusPolicy() == Qt::TabFocus && row->isEnabled() && !row->isHidden();
    };
    if (std::none_of(m_rows.begin(), m_rows.end(), isStop) && !m_rows.empty()) {
        m_rows.front()->setFocusPolicy(Qt::TabFocus);
    }
}

void BreakdownCard::showNote()
{
    const bool isByLabel = m_grouping == FocusGrouping::label;
    const bool hasLabels = !m_breakdown.groups.empty() && !m_breakdown.groups.front().name.empty();
    m_note->setVisible(isByLabel && (m_breakdown.overlaps || !hasLabels));
    m_note->setText(qtText((hasLabels ? overlapText : noLabelText).in(m_language)));
}

void BreakdownCard::addRows(std::size_t wanted)
{
    if (m_rows.size() >= wanted) {
        return;
    }
    while (m_rows.size() < wanted) {
        addRow();
    }
    // Made before them. What takes no keyboard has no place in the order.
    m_rows.back()->setFocusPolicy(Qt::TabFocus);
    QWidget::setTabOrder(m_rows.back(), m_all);
    m_rows.back()->setFocusPolicy(Qt::NoFocus);
}

void BreakdownCard::addRow()
{
    const std::size_t index = m_rows.size();
    auto* row = new BreakdownRow(m_list);
    row->setFocusPolicy(Qt::NoFocus);
    m_rows.push_back(row);
    connect(row, &QAbstractButton::clicked, this,
            [this, index] { Q_EMIT chosen(m_grouping, qtText(m_breakdown.groups[m_shown[index]].name)); });
    connect(row, &PlainButton::neighborRequested, this,
            [this, index](int distance) { moveKeyboard(index, distance); });
    connect(row, &BreakdownRow::focused, this, [this, row] {
        for (BreakdownRow* each : m_rows) {
            each->setFocusPolicy(each == row ? Qt::TabFocus : Qt::NoFocus);
        }
    });
}

void BreakdownCard::moveKeyboard(std::size_t from, int distance)
{
    const std::size_t next = from + static_cast<std::size_t>(distance); // below 0 is far beyond
    if (next < m_shown.size() && m_rows[next]->isEnabled()) {
        m_rows[next]->setFocus(Qt::TabFocusReason);
        for (QWidget* parent = parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
            if (auto* area = qobject_cast<QScrollArea*>(parent)) {
                area->ensureWidgetVisible(m_rows[next]);
            }
        }
    }
}

} // namespace brevlin
