#pragma once

#include "core/key_combination.h"
#include "core/shortcut_action.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

namespace brevlin {

/// Keys that are heard wherever the keyboard is, as far as the desktop lets a program hear any. Nothing is
/// asked of the desktop before one of the commands is called.
class GlobalShortcuts
{
public:
    enum class Offer {
        commands, ///< nothing; the desktop may run a command by a key of its own settings
        keys,     ///< the program takes hold of keys by itself
        dialog,   ///< the desktop lets the user choose them in a dialog of its own, and remembers them
    };
    /// Why a key is not heard.
    enum class Trouble {
        none,
        taken,  ///< another program has it
        absent, ///< the keyboard lacks it
    };
    using Titles = ForEachShortcut<std::string>;
    struct Observer
    {
        /// What the queries below give.
        std::function<void()> changed;
        /// With what the desktop gave to the user's action, for the window that it opens; may be empty.
        std::function<void(ShortcutAction action, const std::string& activationToken)> activated;
        /// The user has chosen keys in the desktop's dialog.
        std::function<void()> bound;
    };

    virtual ~GlobalShortcuts() = default;

    virtual void setObserver(Observer observer) = 0;

    /// As far as it is known.
    virtual Offer offer() const = 0;
    /// Asks the desktop what it offers, and takes hold of keys anew that were taken.
    virtual void look() = 0;

    // Offer::keys
    /// Takes hold of these keys and lets go of all others. They are kept in mind where the desktop offers
    /// something else.
    virtual void hold(const ShortcutKeys& keys) = 0;
    virtual Trouble trouble(ShortcutAction action) const = 0;
    /// The key of KeyCombination that has this native scan code; nothing for one that cannot be used, such as
    /// a modifier.
    virtual std::optional<std::string> keyAt(std::uint32_t scanCode) const = 0;

    // Offer::dialog
    /// Has the keys heard that the user has chosen before, without asking him.
    virtual void resume(const Titles& titles) = 0;
    /// The keys are heard no longer; the desktop may remember them all the same.
    virtual void forget() = 0;
    /// Lets the user choose, in front of his window, which is named by its native identifier.
    virtual void openDialog(std::uint64_t window, const Titles& titles) = 0;
    virtual bool isDialogOpen() const = 0;
    /// Whether the desktop could not open it.
    virtual bool hasDialogFailed() const = 0;
    /// The desktop's own words for the key; empty where it has none.
    virtual std::string trigger(ShortcutAction action) const = 0;
};

} // namespace brevlin
