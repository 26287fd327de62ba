#pragma once

#include <QWidget>

namespace brevlin {

class AppModel;
class IntentionField;
class TimerControlRow;
class TimerCycleIndicator;
class TimerRingView;

/// The cycle, the ring, what the phase is for and the controls, one below the other. Where the window is low
/// the gaps between them shrink first, and then the ring.
class TimerCard final : public QWidget
{
    Q_OBJECT

public:
    explicit TimerCard(AppModel& model, QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    int heightBeside() const;

    TimerCycleIndicator* m_cycle; // these are owned by this widget
    TimerRingView* m_ring;
    IntentionField* m_intention;
    TimerControlRow* m_controls;
};

} // namespace brevlin
