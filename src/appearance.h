#pragma once

#include "platform/task_scheduler.h"
#include "ui/style/theme.h"

#include <functional>
#include <optional>

namespace brevlin {

class BrevlinStyle;
class MainWindowStore;
class PortalDesktopSettings;
class WindowSystem;

/// The program's style, and its colours and motion as the desktop wants them. Until that says so the colours
/// are those of the last time.
class Appearance final
{
public:
    /// All outlive this. No widget may have been made before.
    Appearance(PortalDesktopSettings& settings, MainWindowStore& store, WindowSystem& windowSystem);
    ~Appearance();
    Appearance(const Appearance&) = delete;
    Appearance& operator=(const Appearance&) = delete;

    /// How long the first window waits for the desktop's word, which comes through the handler.
    Seconds firstWait() const;
    /// Called each time the desktop has said how things are to look.
    void setChangeHandler(std::function<void()> handler) { m_changed = std::move(handler); }

private:
    void apply();
    void showColors(ColorScheme scheme);

    PortalDesktopSettings& m_settings;
    MainWindowStore& m_store;
    BrevlinStyle* m_style;   // owned by the application
    ColorScheme m_ofPalette; // the desktop's own, where it states no preference
    std::optional<ColorScheme> m_shown;
    std::optional<bool> m_wasDark; // what the store has, or will have
    std::function<void()> m_changed;
};

} // namespace brevlin
