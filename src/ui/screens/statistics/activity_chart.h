#pragma once

#include "ui/screens/statistics/activity_picture.h"
#include "ui/style/animation.h"
#include "ui/style/focus_ring.h"

#include <QWidget>

#include <optional>

namespace brevlin {

/// The chart of one period. A new period fades in over the old one; new figures of the same period are there
/// at once. Pointing at a bar or a cell tells what it stands for, and so does walking to it with the arrow
/// keys. A year too wide for its room is moved sideways by the wheel, or by walking.
class ActivityChart final : public QWidget
{
    Q_OBJECT

public:
    explicit ActivityChart(QWidget* parent = nullptr);

    void show(const ActivityInput& input);
    using QWidget::show;

    const ActivityPicture& picture() const { return m_picture; }
    /// Where the element is in the widget.
    QRectF elementRect(std::size_t index) const;
    /// The element that the keyboard is on.
    std::optional<std::size_t> currentElement() const { return m_current; }
    std::optional<std::size_t> pointedAt() const { return m_pointedAt; }
    QString elementToolTip(std::size_t index) const;
    /// What assistive technology says of the element.
    QString spokenText(std::size_t index) const;
    std::optional<std::size_t> elementAtPosition(QPointF position) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {0, sizeHint().height()}; }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void scrollTo(double offset);
    void reveal(std::size_t index);
    void pointAt(std::optional<std::size_t> index);
    void walkTo(std::size_t index);
    void announceCurrent();
    void showToolTip(std::size_t index);
    void clipToMoved(QPainter& painter, const ActivityPicture& picture) const;
    void paintPeriod(QPainter& painter, const ActivityPicture& picture, double scroll) const;
    void paintFadingEdges(QPainter& painter, const ActivityPicture& picture, double scroll) const;

    std::optional<ActivityInput> m_input;
    ActivityPicture m_picture;
    ActivityPicture m_leaving; ///< the period before, while it fades
    double m_leavingScroll = 0;
    double m_scroll = 0; ///< points of the picture that lie beyond the left edge
    std::optional<std::size_t> m_current;
    std::optional<std::size_t> m_pointedAt;
    KeyboardFocus m_keyboardFocus;
    ValueAnimation m_arrival; ///< of the new period, from 0 to 1
};

} // namespace brevlin
