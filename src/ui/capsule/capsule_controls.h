#pragma once

#include "ui/controls/plain_button.h"
#include "ui/style/symbol.h"
#include "ui/style/theme.h"

#include <QColor>

namespace brevlin {

/// How far the pointer has to move before a press becomes a drag; points.
inline constexpr int capsuleDragThreshold = 3;

/// A round button of the expanded capsule or the island: a symbol, or a short text. Its tool tip is its name.
class CapsuleRoundButton final : public PlainButton
{
    Q_OBJECT

public:
    struct Colors
    {
        QColor fill;
        QColor content;
    };

    CapsuleRoundButton(Symbol symbol, const Colors& colors, QWidget* parent);
    CapsuleRoundButton(const QString& shownText, const Colors& colors, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
    bool hitButton(const QPoint& position) const override;

private:
    CapsuleRoundButton(Symbol symbol, const QString& shownText, const Colors& colors, QWidget* parent);

    Symbol m_symbol;
    QString m_shownText;
    Colors m_colors;
};

/// A button of the island's lower row: a capsule with a text and, before it, an optional symbol.
class IslandButton final : public PlainButton
{
    Q_OBJECT

public:
    struct Look
    {
        QColor fill;
        QColor content;
        QFont::Weight weight;
        double padding;        ///< at both sides
        double pressedFill;    ///< what of the fill's opacity remains while pressed
        double pressedContent; ///< what of the content's opacity remains while pressed
    };
    static Look secondaryLook(const QColor& fill, const QColor& content);
    static Look primaryLook(const QColor& tint);

    IslandButton(const QString& text, Symbol symbol, const Look& look, QWidget* parent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Symbol m_symbol;
    Look m_look;
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
