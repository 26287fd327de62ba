#pragma once

#include "platform/global_shortcuts.h"

#include <string>
#include <utility>

namespace brevlin::test {

/// A desktop that offers what the test wants; the scan code of a key is its character in lower case.
class FakeGlobalShortcuts final : public GlobalShortcuts
{
public:
    Offer offered = Offer::keys;
    ShortcutKeys held;
    ForEachShortcut<Trouble> troubles;
    ForEachShortcut<std::string> triggers;
    Titles titles; ///< that the desktop was told of
    bool isOpen = false;
    bool hasFailed = false;
    std::string log; ///< a word for each command
    Observer observer;

    void setObserver(Observer newObserver) override { observer = std::move(newObserver); }
    Offer offer() const override { return offered; }
    void look() override { log += "look "; }
    void hold(const ShortcutKeys& keys) override
    {
        log += "hold ";
        held = keys;
    }
    Trouble trouble(ShortcutAction action) const override { return troubles[action]; }
    std::optional<std::string> keyAt(std::uint32_t scanCode) const override
    {
        return scanCode == 1 ? std::optional<std::string>("F1") : keyOfCharacter(scanCode);
    }
    void resume(const Titles& newTitles) override
    {
        log += "resume ";
        titles = newTitles;
    }
    void forget() override { log += "forget "; }
    void openDialog(std::uint64_t /*window*/, const Titles& newTitles) override
    {
        log += "dialog ";
        titles = newTitles;
        isOpen = true;
    }
    bool isDialogOpen() const override { return isOpen; }
    bool hasDialogFailed() const override { return hasFailed; }
    std::string trigger(ShortcutAction action) const override { return triggers[action]; }
};

} // namespace brevlin::test
