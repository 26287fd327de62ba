#pragma once

#include <QWidget>

#include <string>

namespace brevlin {

class AppModel;
class WindowSystem;

/// The settings in a window of their own, of a fixed size where the desktop has the room for it, and with the
/// window manager's frame. The form is made when the window is shown and gone when it closes.
class SettingsWindow final : public QWidget
{
    Q_OBJECT

public:
    SettingsWindow(AppModel& model, WindowSystem& windowSystem, QWidget* parent = nullptr);

    /// Shows the window, raises it and gives it the keyboard. The token is what the desktop gave to the
    /// user's action, empty for one within the program.
    void present(const std::string& activationToken = {});

Q_SIGNALS:
    void quitRequested();

protected:
    void closeEvent(QCloseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void refreshTitle();
    void fitScreen();

    AppModel& m_model;
    WindowSystem& m_windowSystem;
    QWidget* m_form = nullptr; // owned by this widget
};

} // namespace brevlin
