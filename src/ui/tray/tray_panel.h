#pragma once

#include "ui/main/app_section.h"

#include <QElapsedTimer>
#include <QWidget>

#include <memory>

namespace brevlin {

class AppModel;
class FloatingWindowSystem;
class MoreButton;
class PressWatch;
class TrayCurtain;
class WindowSystem;

/// The small timer that the status item opens: the cycle, the way to the main window, the ring and the
/// controls. A click elsewhere and Escape close it.
class TrayPanel final : public QWidget
{
    Q_OBJECT

public:
    static constexpr int contentWidth = 300;

    TrayPanel(AppModel& model, WindowSystem& windowSystem, FloatingWindowSystem& panels);
    ~TrayPanel() override;

    /// Opens the panel beside this point of the screen, or closes it; does nothing when the click that asks
    /// for it has just closed it.
    void toggle(const QPoint& anchor);
    /// The panel itself, without its shadow.
    QRect contentRect() const { return rect().marginsRemoved(contentsMargins()); }

Q_SIGNALS:
    void sectionRequested(AppSection section);

protected:
    /// Qt closes popups when any window appears, and the capsule does when a button of the panel starts the
    /// timer. Whatever else ends the panel hides it.
    void closeEvent(QCloseEvent* event) override;
    bool event(QEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void layOut();
    void translate();
    void showMenu();
    void holdInput();
    void closeByPress();

    AppModel& m_model;
    WindowSystem& m_windowSystem;
    FloatingWindowSystem& m_panels;
    MoreButton* m_more; // owned by this widget
    bool m_hasShadow = false;
    std::unique_ptr<TrayCurtain> m_curtain;   // where the desktop lays windows; this is its child then
    std::unique_ptr<PressWatch> m_pressWatch; // where the pointer cannot be held everywhere
    QElapsedTimer m_sinceClosingPress;        // on something else than the panel
    int m_grabTimer = 0;
    int m_grabsLeft = 0;
    int m_grabsHeld = 0; // how often in succession they have been granted
};

} // namespace brevlin
