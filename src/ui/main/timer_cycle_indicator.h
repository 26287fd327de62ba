#pragma once

#include <QWidget>

namespace brevlin {

class AppModel;

/// Where the timer stands in its cycle: a caption, one segment for each focus phase and a count. One element
/// for assistive technology.
class TimerCycleIndicator final : public QWidget
{
    Q_OBJECT

public:
    TimerCycleIndicator(AppModel& model, bool compact, Qt::Alignment alignment, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString caption() const;
    QString countText() const;
    std::int64_t segmentCount() const;
    QFont captionFont() const;
    QFont countFont() const;
    QSizeF contentSize() const;

    AppModel& m_model;
    bool m_compact;
    Qt::Alignment m_alignment;
};

} // namespace brevlin
