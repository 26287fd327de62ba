#pragma once

#include "ui/capsule/capsule_colors.h"
#include "ui/controls/plain_button.h"
#include "ui/style/symbol.h"

namespace brevlin {

/// How far the pointer has to move before a press becomes a drag; points.
inline constexpr int capsuleDragThreshold = 3;

/// A round button of the expanded capsule or the island: a symbol, or a short text. Its tool tip is its name.
class CapsuleRoundButton final : public PlainButton
{
    Q_OBJECT

public:
    CapsuleRoundButton(Symbol symbol, const CapsuleButtonLook& look, QWidget* parent);
    CapsuleRoundButton(const QString& shownText, const CapsuleButtonLook& look, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;

private:
    CapsuleRoundButton(Symbol symbol, const QString& shownText, const CapsuleButtonLook& look,
                       QWidget* parent);

    Symbol m_symbol;
    QString m_shownText;
    CapsuleButtonLook m_look;
};

/// A button of the island's lower row: a capsule with a text and, before it, an optional symbol.
class IslandButton final : public PlainButton
{
    Q_OBJECT

public:
    enum class Rank { primary, secondary };

    IslandButton(const QString& text, Symbol symbol, Rank rank, const CapsuleButtonLook& look,
                 QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont labelFont() const;
    int padding() const;

    Symbol m_symbol;
    Rank m_rank;
    CapsuleButtonLook m_look;
};

/// The minimised completion: the phase's icon, all of it a button that the capsule can be dragged by.
class MinimizedCompletionButton final : public PlainButton
{
    Q_OBJECT

public:
    MinimizedCompletionButton(TimerPhase phase, QWidget* parent);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;

private:
    TimerPhase m_phase;
    QPoint m_pressedAt;
};

} // namespace brevlin
