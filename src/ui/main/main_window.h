#pragma once

#include "storage/main_window_store.h"
#include "ui/main/app_section.h"

#include <QWidget>

#include <string>
#include <vector>

namespace brevlin {

class AppModel;
class FloatingWindowSystem;
class RootView;
class WindowFrame;
class WindowSystem;

/// The main window. It draws its own title bar and border; closing it hides it and the timer lives on.
/// Remembers its size and place. A file that is dropped on it is one to import.
class MainWindow final : public QWidget
{
    Q_OBJECT

public:
    MainWindow(AppModel& model, SectionSelection& selection, MainWindowStore& store,
               WindowSystem& windowSystem, const FloatingWindowSystem& floatingWindows,
               QWidget* parent = nullptr);
    ~MainWindow() override;

    /// Shows the window, raises it and gives it the keyboard. The token is what the desktop gave to the
    /// user's action.
    void present(const std::string& activationToken);

Q_SIGNALS:
    /// The alert of an end is to become small, or large again.
    void alertSizeRequested();
    void quitRequested();
    void settingsRequested();
    /// For the first time, and on its way to the screen.
    void painted();

protected:
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    bool focusNextPrevChild(bool isNext) override;
    void moveEvent(QMoveEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void addShortcuts();
    void connectTopBar();
    void restoreGeometry();
    void followScreens();
    void updateLeastSize();
    std::vector<QRect> freeAreas() const;
    QSize leastSize() const;
    void cutToWorkArea();
    void rememberGeometry();
    void saveGeometry();
    void toggleMaximized();
    void toggleFullScreen();
    void showWindowMenu(const QPoint& globalPosition);
    void repaintActivity();

    AppModel& m_model;
    MainWindowStore& m_store;
    WindowSystem& m_windowSystem;
    const FloatingWindowSystem& m_floatingWindows;
    RootView* m_rootView; // these are owned by this widget
    WindowFrame* m_frame;
    WindowGeometry m_normalGeometry; // of the content, without the margin for the shadow
    WindowGeometry m_savedGeometry;
    bool m_isPainted = false;
    int m_saveTimer = 0;
    int m_placedTimer = 0;   // until the window manager has placed the window
    bool m_isPlaced = false; // shown once, so that the window manager has given it a place

    void timerEvent(QTimerEvent* event) override;
};

} // namespace brevlin
