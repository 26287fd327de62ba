#include "app/shortcuts.h"

#include <utility>

namespace brevlin {

Shortcuts::Shortcuts(GlobalShortcuts* desktop) : m_desktop(desktop)
{
    if (m_desktop == nullptr) {
        return;
    }
    GlobalShortcuts::Observer observer;
    observer.changed = [this] {
        Q_EMIT changed();
    };
    observer.activated = [this](ShortcutAction action, const std::string& token) {
        Q_EMIT activated(action, token);
    };
    observer.bound = [this] {
        Q_EMIT bound();
    };
    m_desktop->setObserver(std::move(observer));
}

Shortcuts::~Shortcuts()
{
    if (m_desktop != nullptr) {
        m_desktop->setObserver({});
    }
}

void Shortcuts::follow(const AddedPreferences& preferences, AppLanguage language)
{
    m_language = language;
    const bool areOthers = std::exchange(m_keys, preferences.shortcutKeys) != preferences.shortcutKeys;
    const bool hadBound = std::exchange(m_hasBound, preferences.hasBoundShortcutsOnce);
    if (m_desktop == nullptr) {
        return;
    }
    if (areOthers) {
        m_desktop->hold(m_keys);
    }
    if (m_hasBound && !hadBound) {
        m_desktop->resume(titles());
    } else if (hadBound && !m_hasBound) {
        m_desktop->forget();
    }
}

GlobalShortcuts::Offer Shortcuts::offer() const
{
    return m_desktop != nullptr ? m_desktop->offer() : GlobalShortcuts::Offer::commands;
}

std::optional<ShortcutAction> Shortcuts::otherWith(const KeyCombination& key, ShortcutAction action) const
{
    for (const ShortcutAction other : allCases<ShortcutAction>()) {
        if (other != action && m_keys[other] == key) {
            return other;
        }
    }
    return std::nullopt;
}

void Shortcuts::look()
{
    if (m_desktop != nullptr) {
        m_desktop->look();
    }
}

void Shortcuts::openDialog(std::uint64_t window)
{
    if (m_desktop != nullptr) {
        m_desktop->openDialog(window, titles());
    }
}

GlobalShortcuts::Titles Shortcuts::titles() const
{
    GlobalShortcuts::Titles titles;
    for (const ShortcutAction action : allCases<ShortcutAction>()) {
        titles[action] = title(action, m_language);
    }
    return titles;
}

} // namespace brevlin
