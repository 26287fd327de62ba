#pragma once

#include "ui/screens/history/history_layout.h"
#include "ui/screens/history/history_painter.h"
#include "ui/style/focus_ring.h"

#include <QAbstractScrollArea>

#include <optional>

namespace brevlin {

class AppModel;

/// Every record in one card a day. Only what can be seen is laid out and drawn, so that a history of many
/// years opens and scrolls like a short one.
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
    void setCurrentRow(std::size_t row);
    QString spokenText(std::size_t row) const;
    const std::vector<HistoryDay>& days() const { return m_layout.days(); }
    /// Where a day's heading lies in the viewport; it may be outside.
    QRect headingRect(std::size_t day) const;
    QString spokenHeading(std::size_t day) const;
    /// Reads the model again: records, language or time zone have changed.
    void refresh();

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
    void deleteRow(std::size_t row);

    AppModel& m_model;
    HistoryPainter m_painter;
    Calendar m_calendar; // with the locale of the language
    HistoryLayout m_layout;
    std::optional<Anchor> m_anchor; // the first row that is wholly visible
    std::optional<std::size_t> m_currentRow;
    Uuid m_currentRecord; // what the current row holds
    std::optional<std::size_t> m_hoveredRow;
    std::optional<std::size_t> m_menuRow;
    KeyboardFocus m_keyboardFocus;
};

} // namespace brevlin
