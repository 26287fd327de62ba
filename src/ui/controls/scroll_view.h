#pragma once

#include <QScrollArea>
#include <QScrollBar>

namespace brevlin {

/// A slim scroll bar without a groove; there is nothing to see while everything fits.
class SlimScrollBar final : public QScrollBar
{
    Q_OBJECT

public:
    static constexpr int thickness = 12;

    explicit SlimScrollBar(Qt::Orientation orientation, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {thickness, thickness}; }

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// Scrolls its widget up and down over the screen's own background. The bar always keeps its place, so that
/// nothing moves sideways when it is needed.
class ScrollView final : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollView(QWidget* parent = nullptr);
};

} // namespace brevlin
