#pragma once

#include "core/focus_breakdown.h"
#include "core/language.h"
#include "ui/controls/card_surface.h"

#include <cstddef>
#include <vector>

namespace brevlin {

class BreakdownRow;
class FormLabel;
class FormNote;
class LinkButton;
class SegmentedPicker;

/// What the focus time of a period was for, by intention or by label: a list whose rows lead to the phases.
/// Shows the longest and, where asked, all.
class BreakdownCard final : public CardSurface
{
    Q_OBJECT

public:
    explicit BreakdownCard(QWidget* parent = nullptr);

    FocusGrouping grouping() const { return m_grouping; }
    void show(const FocusBreakdown& breakdown, AppLanguage language);
    using QWidget::show;
    /// Of another period the longest are shown.
    void showLongest() { m_showsAll = false; }

Q_SIGNALS:
    /// The user wants it by this; what is shown is what it was.
    void groupingChosen(FocusGrouping grouping);
    /// The row of this name was pressed.
    void chosen(FocusGrouping grouping, const QString& name);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    std::vector<std::size_t> shownGroups() const;
    void refresh();
    void showRows();
    void showNote();
    void addRows(std::size_t wanted);
    void addRow();
    void placeRows();
    void keepOneStop();
    void moveKeyboard(std::size_t from, int distance);

    FocusGrouping m_grouping = FocusGrouping::intention;
    FocusBreakdown m_breakdown;
    AppLanguage m_language = AppLanguage::simplifiedChinese;
    bool m_showsAll = false;
    std::vector<BreakdownRow*> m_rows; // more than are shown, maybe; these are owned by this widget
    std::vector<std::size_t> m_shown;  // the groups of the first rows
    FormLabel* m_title;
    SegmentedPicker* m_picker;
    QWidget* m_list;
    FormNote* m_note;
    LinkButton* m_all;
};

} // namespace brevlin
