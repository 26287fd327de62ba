#pragma once

#include <QStringList>
#include <QWidget>

#include <optional>

namespace brevlin {

/// A few texts below or above a field, within its window: a window of its own would take the keyboard from
/// the field. It never has the keyboard; the field tells it which text is marked.
class SuggestionList final : public QWidget
{
    Q_OBJECT

public:
    explicit SuggestionList(QWidget& field);

    const QStringList& texts() const { return m_texts; }
    /// Shows them where there is room; hides where there are none.
    void show(const QStringList& texts);
    /// The text that Return takes; none until an arrow key or the pointer has marked one.
    std::optional<QString> marked() const;
    /// Marks the next or the one before, going round; past either end nothing is marked.
    void step(int change);

Q_SIGNALS:
    void chosen(const QString& text);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void place();
    QRect rowRect(int row) const;
    int rowAt(const QPoint& position) const;
    void mark(int row);

    QWidget& m_field;
    QStringList m_texts;
    int m_marked = -1;
};

} // namespace brevlin
