#pragma once

#include <QWidget>

namespace brevlin {

/// A hairline across its whole length. It takes one point of a layout's room and paints half of it, which at
/// 1x is still one pixel.
class ThinDivider final : public QWidget
{
    Q_OBJECT

public:
    explicit ThinDivider(QWidget* parent = nullptr);
    explicit ThinDivider(Qt::Orientation orientation, QWidget* parent = nullptr);

    /// How many points stay empty before a horizontal divider begins, at the leading edge.
    void setLeadingIndent(int points);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::Orientation m_orientation;
    int m_leadingIndent = 0;
};

} // namespace brevlin
