#include "platform/freedesktop/shortcuts/desktop_global_shortcuts.h"

#include <algorithm>
#include <utility>

namespace brevlin {

DesktopGlobalShortcuts::DesktopGlobalShortcuts(std::string busAddress, TaskScheduler& scheduler)
    : m_busAddress(std::move(busAddress)), m_scheduler(scheduler)
{}

PortalShortcuts& DesktopGlobalShortcuts::portal()
{
    if (!m_portal) {
        m_portal = std::make_unique<PortalShortcuts>(m_busAddress, observerOfParts());
    }
    return *m_portal;
}

void DesktopGlobalShortcuts::makeGrabs()
{
    if (!m_grabs) {
        m_grabs = std::make_unique<X11KeyGrabs>(m_scheduler, observerOfParts());
    }
}

// Both may still tell something when nobody listens any more.
GlobalShortcuts::Observer DesktopGlobalShortcuts::observerOfParts()
{
    Observer observer;
    observer.changed = [this] {
        grab(); // the portal may have come
        if (m_observer.changed) {
            m_observer.changed();
        }
    };
    observer.activated = [this](ShortcutAction action, const std::string& token) {
        if (m_observer.activated) {
            m_observer.activated(action, token);
        }
    };
    observer.bound = [this] {
        if (m_observer.bound) {
            m_observer.bound();
        }
    };
    return observer;
}

GlobalShortcuts::Offer DesktopGlobalShortcuts::offer() const
{
    const bool canGrab = m_grabs && m_grabs->isPossible();
    const bool holdsKeys = canGrab && m_keys != ShortcutKeys{};
    if (m_portal && m_portal->isOffered() && (m_isPortalChosen || !holdsKeys)) {
        return Offer::dialog;
    }
    return canGrab ? Offer::keys : Offer::commands;
}

void DesktopGlobalShortcuts::look()
{
    makeGrabs();
    grab();
    portal().look();
}

void DesktopGlobalShortcuts::hold(const ShortcutKeys& keys)
{
    m_keys = keys;
    if (keys != ShortcutKeys{}) {
        makeGrabs();
    }
    grab();
}

void DesktopGlobalShortcuts::grab()
{
    if (!m_grabs) {
        return;
    }
    const ShortcutKeys wanted = offer() == Offer::keys ? m_keys : ShortcutKeys{};
    const bool lacksOne = std::ranges::any_of(allCases<ShortcutAction>(), [this](ShortcutAction action) {
        return m_grabs->trouble(action) != Trouble::none;
    });
    if (lacksOne || m_grabs->held() != wanted) {
        m_grabs->hold(wanted);
    }
}

GlobalShortcuts::Trouble DesktopGlobalShortcuts::trouble(ShortcutAction action) const
{
    return m_grabs ? m_grabs->trouble(action) : Trouble::none;
}

std::optional<std::string> DesktopGlobalShortcuts::keyAt(std::uint32_t scanCode) const
{
    return m_grabs ? m_grabs->keyAt(scanCode) : std::nullopt;
}

void DesktopGlobalShortcuts::resume(const Titles& titles)
{
    m_isPortalChosen = true;
    portal().resume(titles);
    grab();
}

void DesktopGlobalShortcuts::forget()
{
    m_isPortalChosen = false;
    if (m_portal) {
        m_portal->forget();
    }
    grab();
}

void DesktopGlobalShortcuts::openDialog(std::uint64_t window, const Titles& titles)
{
    portal().openDialog(window, titles);
}

std::string DesktopGlobalShortcuts::trigger(ShortcutAction action) const
{
    return m_portal ? m_portal->trigger(action) : std::string();
}

} // namespace brevlin
