#pragma once

#include "core/language.h"
#include "platform/global_shortcuts.h"
#include "storage/added_preferences.h"

#include <QObject>

#include <cstdint>
#include <optional>
#include <string>

namespace brevlin {

/// The user's keys that are heard everywhere: follows the preferences and tells what the desktop makes of
/// them. As long as there are none, and nobody looks at them, the desktop is asked nothing.
class Shortcuts final : public QObject
{
    Q_OBJECT

public:
    /// Without a desktop there are commands alone.
    explicit Shortcuts(GlobalShortcuts* desktop);
    ~Shortcuts() override;

    void follow(const AddedPreferences& preferences, AppLanguage language);

    GlobalShortcuts::Offer offer() const;
    /// What the desktop tells of its offer, which is there where it offers more than commands.
    const GlobalShortcuts& desktop() const { return *m_desktop; }
    const std::optional<KeyCombination>& key(ShortcutAction action) const { return m_keys[action]; }
    /// Which other action has this key already.
    std::optional<ShortcutAction> otherWith(const KeyCombination& key, ShortcutAction action) const;
    /// Whether the user has chosen keys in the desktop's dialog, maybe none for some actions.
    bool hasBound() const { return m_hasBound; }

    /// Somebody looks: what the desktop offers is asked for.
    void look();
    /// In front of the window that bears this native identifier.
    void openDialog(std::uint64_t window);

Q_SIGNALS:
    /// Something of the above is different, apart from the user's own keys.
    void changed();
    void activated(ShortcutAction action, const std::string& activationToken);
    void bound();

private:
    GlobalShortcuts::Titles titles() const;

    GlobalShortcuts* m_desktop;
    ShortcutKeys m_keys;
    bool m_hasBound = false;
    AppLanguage m_language = AppLanguage::simplifiedChinese;
};

} // namespace brevlin
