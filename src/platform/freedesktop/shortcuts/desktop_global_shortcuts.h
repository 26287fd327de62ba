#pragma once

#include "platform/freedesktop/shortcuts/portal_shortcuts.h"
#include "platform/freedesktop/shortcuts/x11_key_grabs.h"
#include "platform/global_shortcuts.h"
#include "platform/task_scheduler.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

namespace brevlin {

/// The portal where the desktop has it, else the X server where it has the keyboard, else nothing. Who has
/// set keys of the X server keeps them until he has chosen some in the portal's dialog. Both are made when
/// they are first needed.
class DesktopGlobalShortcuts final : public GlobalShortcuts
{
public:
    DesktopGlobalShortcuts(std::string busAddress, TaskScheduler& scheduler);

    void setObserver(Observer observer) override { m_observer = std::move(observer); }
    Offer offer() const override;
    void look() override;
    void hold(const ShortcutKeys& keys) override;
    Trouble trouble(ShortcutAction action) const override;
    std::optional<std::string> keyAt(std::uint32_t scanCode) const override;
    void resume(const Titles& titles) override;
    void forget() override;
    void openDialog(std::uint64_t window, const Titles& titles) override;
    bool isDialogOpen() const override { return m_portal && m_portal->isDialogOpen(); }
    bool hasDialogFailed() const override { return m_portal && m_portal->hasDialogFailed(); }
    std::string trigger(ShortcutAction action) const override;

private:
    PortalShortcuts& portal();
    void makeGrabs();
    void grab();
    Observer observerOfParts();

    const std::string m_busAddress;
    TaskScheduler& m_scheduler;
    Observer m_observer;
    ShortcutKeys m_keys;
    bool m_isPortalChosen = false;
    std::unique_ptr<PortalShortcuts> m_portal;
    std::unique_ptr<X11KeyGrabs> m_grabs;
};

} // namespace brevlin
