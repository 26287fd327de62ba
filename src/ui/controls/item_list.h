#pragma once

#include "ui/style/focus_ring.h"

#include <QListWidget>

namespace brevlin {

/// Lines of a dialog to look through or to choose one of: a text at the leading edge, another one at the
/// trailing edge. The arrow keys go through them; it scrolls once there are more than a few.
class ItemList final : public QListWidget
{
    Q_OBJECT

public:
    explicit ItemList(QWidget* parent = nullptr);

    /// A line that cannot be chosen is fainter, and passed over where lines are chosen.
    void addLine(const QString& leading, const QString& trailing, bool canBeChosen = true);
    /// Whether one line holds as the chosen one.
    void setChoosable(bool choosable);
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// How a line is painted.
    struct Look
    {
        bool isChosen = false;
        bool isHovered = false;
        bool isFaint = false;
    };
    void paintLine(QPainter& painter, const QRect& rect, const QModelIndex& index, Look look) const;

protected:
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    KeyboardFocus m_keyboardFocus;
    bool m_isChoosable = false;
};

} // namespace brevlin
