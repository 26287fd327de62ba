#pragma once

#include "ui/controls/plain_button.h"

namespace brevlin {

/// A tab of the top bar: text alone, selection shown by weight and colour. As wide as the heavier of the two
/// weights asks, so that its neighbours stand still when the selection moves.
class SectionTab final : public SelectableButton
{
    Q_OBJECT

public:
    explicit SectionTab(QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// The logo at the end of the top bar; it leads to the About screen.
class LogoButton final : public SelectableButton
{
    Q_OBJECT

public:
    explicit LogoButton(QWidget* parent = nullptr);

    QSize sizeHint() const override { return {36, 36}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;
};

/// One of the buttons of our own title bar: a round 14-point disc in a 22-point square, so that a row without
/// spacing gives the discs a distance of 8. Its accessible name is the caller's to set.
class WindowButton final : public PlainButton
{
    Q_OBJECT

public:
    enum class Kind { close, minimize, maximize, restore };

    explicit WindowButton(Kind kind, QWidget* parent = nullptr);

    /// Maximise and restore are one button in turn.
    void setKind(Kind kind);
    QSize sizeHint() const override { return {22, 22}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    Kind m_kind;
};

} // namespace brevlin
