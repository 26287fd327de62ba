#pragma once

#include "core/timer_vocabulary.h"

#include <QPainterPath>
#include <QRectF>
#include <QWidget>

#include <optional>

class QPainter;

namespace brevlin {

class Theme;

/// The two halves of the mark: the upper stands for breaks, the lower for focus.
enum class BrevlinMarkPart { upper, lower, both };

/// The outline of the mark, stretched to `rect`.
QPainterPath brevlinMarkPath(BrevlinMarkPart part, const QRectF& rect);

/// The logo in the square `rect`, in its two colours or, where one is given, in that colour alone.
void paintBrevlinLogo(QPainter& painter, const QRectF& rect, const Theme& theme,
                      std::optional<QColor> color = {});
/// The mark in the phase's colour in the square `rect`: upright for focus, turned by 45 degrees for breaks.
void paintPhaseIcon(QPainter& painter, const QRectF& rect, TimerPhase phase, const Theme& theme);

/// The logo as a view, `size` x `size`. Assistive technology sees a picture without a name.
class BrevlinLogoView final : public QWidget
{
    Q_OBJECT

public:
    explicit BrevlinLogoView(int size, QWidget* parent = nullptr);

    /// No colour shows the logo's own two.
    void setColor(std::optional<QColor> color);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int m_size;
    std::optional<QColor> m_color;
};

/// The icon of a phase as a view, `size` x `size`; a decoration that needs no name.
class PhaseIconView final : public QWidget
{
    Q_OBJECT

public:
    PhaseIconView(TimerPhase phase, int size, QWidget* parent = nullptr);

    TimerPhase phase() const { return m_phase; }
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    TimerPhase m_phase;
    int m_size;
};

} // namespace brevlin
