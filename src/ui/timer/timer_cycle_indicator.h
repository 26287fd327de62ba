#pragma once

#include <QWidget>

#include <utility>

namespace brevlin {

class AppModel;

/// Where the timer stands in its cycle: a caption, one segment for each focus phase and a count. Segments
/// become narrower where there is no room for them all. One element for assistive technology.
class TimerCycleIndicator final : public QWidget
{
    Q_OBJECT

public:
    TimerCycleIndicator(AppModel& model, bool compact, Qt::Alignment alignment, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString caption() const;
    QString countText() const;
    std::int64_t segmentCount() const;
    QFont captionFont() const;
    QFont countFont() const;
    double textWidth() const;
    /// The width of a segment, and the space between two, in a row of all that is this wide at most.
    std::pair<double, double> segmentsWithin(double width) const;
    QSizeF contentSize(double width) const;

    AppModel& m_model;
    bool m_compact;
    Qt::Alignment m_alignment;
};

} // namespace brevlin
