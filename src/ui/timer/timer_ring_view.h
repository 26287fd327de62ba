#pragma once

#include "core/timer_vocabulary.h"
#include "ui/style/animation.h"
#include "ui/style/theme.h"

#include <QWidget>

#include <optional>

namespace brevlin {

class AppModel;
class NumericText;

/// The sizes of a ring; points.
struct TimerRingMetrics
{
    double diameter; ///< of the circle that is stroked, half of the line inside it and half outside
    double iconSize;
    double timeSize;
    double lineWidth;

    bool operator==(const TimerRingMetrics&) const = default;
};

/// The countdown: an arc that grows clockwise from twelve o'clock around the phase's icon, the time left and,
/// while a phase is under way, the time of its end. One element for assistive technology, which may ask for
/// the time at any moment but is not told of each second.
class TimerRingView final : public QWidget
{
    Q_OBJECT

public:
    TimerRingView(AppModel& model, const TimerRingMetrics& metrics, QWidget* parent = nullptr);

    /// In place of those that it was made with.
    void setMetrics(const TimerRingMetrics& metrics);
    const TimerRingMetrics& metrics() const { return m_metrics; }
    /// The opaque colour that the ring stands on: a digit that changes then repaints nothing beneath it.
    void setBackdrop(ThemeColor backdrop);
    /// How far the stroke reaches out of the circle's square on each side; whole points. The widget is larger
    /// than the circle by that, and what lies around it keeps its distance from the circle.
    int overhang() const;
    /// What assistive technology reads now.
    QString spokenText() const;
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void updateProgress();
    void updateTime();
    void updateTexts();
    QString endText() const;
    QStringList endLines(double heightAbove) const;
    void layOut();
    void repaintArc(double progress);
    void paint(QPainter& painter, const QRect& part) const;
    QRectF circle() const;
    bool liesInsideRing(const QRectF& place) const;
    QRect arcBounds(double from, double to) const;
    double spacing() const;

    AppModel& m_model;
    TimerRingMetrics m_metrics;
    std::optional<ThemeColor> m_backdrop;
    NumericText* m_time;       // owned by this widget
    ValueAnimation m_progress; // what is shown, on its way to the model's
    double m_paintedProgress = 0.0;
    TimerPhase m_phase = TimerPhase::focus;
    QString m_endText;
    QStringList m_endLines; // the same as it is drawn
    QRectF m_iconRect;
    QRectF m_endTextRect;
};

} // namespace brevlin
