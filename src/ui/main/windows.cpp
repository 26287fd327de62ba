#include "ui/main/windows.h"

#include "ui/main/main_window.h"
#include "ui/main/settings_window.h"

namespace brevlin {

Windows::Windows(AppModel& model, SectionSelection& selection, MainWindowStore& store,
                 WindowSystem& windowSystem, const FloatingWindowSystem& floatingWindows)
    : m_model(model)
    , m_selection(selection)
    , m_store(store)
    , m_windowSystem(windowSystem)
    , m_floatingWindows(floatingWindows)
{}

Windows::~Windows() = default;

MainWindow& Windows::mainWindow()
{
    if (!m_main) {
        m_main =
            std::make_unique<MainWindow>(m_model, m_selection, m_store, m_windowSystem, m_floatingWindows);
        connect(m_main.get(), &MainWindow::alertSizeRequested, this, &Windows::alertSizeRequested);
        connect(m_main.get(), &MainWindow::settingsRequested, this, [this] { presentSettings(); });
        connect(m_main.get(), &MainWindow::painted, this, &Windows::painted);
        connect(m_main.get(), &MainWindow::quitRequested, this, &Windows::quitRequested);
        Q_EMIT made(m_main.get());
    }
    return *m_main;
}

SettingsWindow& Windows::settingsWindow()
{
    if (!m_settings) {
        m_settings = std::make_unique<SettingsWindow>(m_model, m_windowSystem);
        connect(m_settings.get(), &SettingsWindow::quitRequested, this, &Windows::quitRequested);
        Q_EMIT made(m_settings.get());
    }
    return *m_settings;
}

void Windows::showMain()
{
    mainWindow().show();
}

void Windows::presentMain(const std::string& activationToken)
{
    mainWindow().present(activationToken);
}

void Windows::presentSettings(const std::string& activationToken)
{
    settingsWindow().present(activationToken);
}

void Windows::close()
{
    if (m_settings) {
        m_settings->close();
    }
    if (m_main) {
        m_main->close();
    }
}

} // namespace brevlin
