#pragma once

#include <QWidget>

namespace brevlin {

class AppModel;
class TimerControlRow;
class TimerCycleIndicator;
class TimerRingView;

/// The cycle, the ring and the controls, one below the other. The ring keeps its size: where the window is
/// low, the gaps between them shrink.
class TimerCard final : public QWidget
{
    Q_OBJECT

public:
    explicit TimerCard(AppModel& model, QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    int circleSide() const;

    TimerCycleIndicator* m_cycle; // these are owned by this widget
    TimerRingView* m_ring;
    TimerControlRow* m_controls;
};

} // namespace brevlin
