#pragma once

#include "core/focus_breakdown.h"
#include "core/language.h"
#include "ui/controls/plain_button.h"

#include <QString>

namespace brevlin {

/// What a row says, and how wide its columns are.
struct BreakdownTexts
{
    QString name;
    QString duration;
    QString share;
    QString phases;
    bool isUnnamed = false; ///< what nobody has named

    /// All of it in one sentence.
    QString spoken() const;
    bool operator==(const BreakdownTexts&) const = default;
};
BreakdownTexts breakdownTexts(const FocusGroup& group, FocusGrouping grouping, AppLanguage language);

struct BreakdownColumns
{
    double duration = 0;
    double share = 0;
    double phases = 0;

    /// Makes room for these texts.
    void fit(const BreakdownTexts& texts);
    bool operator==(const BreakdownColumns&) const = default;
};

/// One thing that focus time went to: its figures above a quiet bar for its share. Pressed, it leads to its
/// phases.
class BreakdownRow final : public PlainButton
{
    Q_OBJECT

public:
    static constexpr int rowHeight = 44;
    static constexpr int bleed = 8; ///< from its bounds to what is seen of it while nobody points at it

    explicit BreakdownRow(QWidget* parent);

    void show(const BreakdownTexts& texts, const BreakdownColumns& columns, double share);
    using QWidget::show;
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QSize sizeHint() const override { return {0, rowHeight}; }

Q_SIGNALS:
    void focused();

protected:
    void focusInEvent(QFocusEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    double nameWidth() const;
    void elide();

    BreakdownTexts m_texts;
    BreakdownColumns m_columns;
    QString m_shownName;
    double m_share = 0;
};

} // namespace brevlin
