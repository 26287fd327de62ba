#pragma once

#include "ui/screens/history/history_layout.h"
#include "ui/screens/history/history_painter.h"
#include "ui/style/focus_ring.h"

#include <QAbstractScrollArea>

#include <optional>
#include <set>
#include <vector>

namespace brevlin {

class AppModel;

/// Every record that the filter lets through in one card a day. Only what can be seen is laid out and drawn,
/// so that a history of many years opens and scrolls like a short one. Shift and Ctrl choose several.
class HistoryList final : public QAbstractScrollArea
{
    Q_OBJECT

public:
    explicit HistoryList(AppModel& model, QWidget* parent = nullptr);

    std::size_t rowCount() const { return m_layout.rowCount(); }
    /// Where a row lies in the viewport; it may be outside.
    QRect rowRect(std::size_t row) const;
    std::optional<std::size_t> rowAt(const QPoint& position) const;
    /// The row that the keyboard acts on.
    std::optional<std::size_t> currentRow() const { return m_currentRow; }
    /// The row is chosen and no other.
    void setCurrentRow(std::size_t row);
    bool isChosen(std::size_t row) const { return m_chosen.contains(record(row).id); }
    void setFilter(HistoryFilter filter);
    QString spokenText(std::size_t row) const;
    const std::vector<HistoryDay>& days() const { return m_layout.days(); }
    /// Where a day's heading lies in the viewport; it may be outside.
    QRect headingRect(std::size_t day) const;
    QString spokenHeading(std::size_t day) const;
    /// Reads the model again: records, language or time zone have changed.
    void refresh();

Q_SIGNALS:
    /// The user wants to correct this record.
    void editRequested(const brevlin::Uuid& record);
    void additionRequested();

protected:
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;

private:
    struct Anchor
    {
        Uuid record;
        int distance; // of its row's top from the viewport's
    };

    const SessionRecord& record(std::size_t row) const;
    std::optional<std::size_t> rowOf(const Uuid& record) const;
    void rememberAnchor();
    void updateScrollRange();
    void showRow(std::size_t row);
    void setHoveredRow(std::optional<std::size_t> row);
    void paintDay(QPainter& painter, std::size_t day, const QRect& visible);
    void openMenu(std::size_t row, const QPoint& globalPosition);
    enum class Reach { one, extended, toggled };
    static Reach reachOf(Qt::KeyboardModifiers modifiers);
    void moveTo(std::size_t row, Reach reach);
    void chooseAll();
    std::vector<Uuid> chosen() const;
    void deleteChosen();
    bool followKey(const QKeyEvent& event);

    AppModel& m_model;
    HistoryPainter m_painter;
    Calendar m_calendar; // with the locale of the language
    HistoryLayout m_layout;
    std::optional<Anchor> m_anchor; // the first row that is wholly visible
    std::optional<std::size_t> m_currentRow;
    Uuid m_currentRecord;       // what the current row holds
    std::size_t m_pivotRow = 0; // from which Shift chooses
    std::set<Uuid> m_chosen;
    HistoryFilter m_filter;
    std::optional<std::size_t> m_hoveredRow;
    std::optional<std::size_t> m_menuRow;
    KeyboardFocus m_keyboardFocus;
};

} // namespace brevlin
