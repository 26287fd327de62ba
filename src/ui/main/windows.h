#pragma once

#include <QObject>

#include <memory>
#include <string>

namespace brevlin {

class AppModel;
class FloatingWindowSystem;
class MainWindow;
class MainWindowStore;
class SectionSelection;
class SettingsWindow;
class WindowSystem;

/// The program's windows, each made when it is first asked for: a program that was started to stay in the
/// background has none.
class Windows final : public QObject
{
    Q_OBJECT

public:
    /// All outlive this.
    Windows(AppModel& model, SectionSelection& selection, MainWindowStore& store, WindowSystem& windowSystem,
            const FloatingWindowSystem& floatingWindows);
    ~Windows() override;

    /// Without asking for the keyboard.
    void showMain();
    /// Shows the window, raises it and gives it the keyboard. The token is what the desktop gave to the
    /// user's action, empty for one within the program.
    void presentMain(const std::string& activationToken);
    void presentSettings(const std::string& activationToken = {});
    void close();

Q_SIGNALS:
    /// Before it is shown for the first time.
    void made(QWidget* window);
    /// The main window, for the first time.
    void painted();
    /// The alert of an end is to become small, or large again.
    void alertSizeRequested();
    void quitRequested();

private:
    MainWindow& mainWindow();
    SettingsWindow& settingsWindow();

    AppModel& m_model;
    SectionSelection& m_selection;
    MainWindowStore& m_store;
    WindowSystem& m_windowSystem;
    const FloatingWindowSystem& m_floatingWindows;
    std::unique_ptr<MainWindow> m_main;
    std::unique_ptr<SettingsWindow> m_settings;
};

} // namespace brevlin
