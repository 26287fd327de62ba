#include "platform/freedesktop/notifications/switches/do_not_disturb_switch.h"

#include "platform/freedesktop/notifications/switches/bus_switches.h"
#include "platform/freedesktop/notifications/switches/settings_switch.h"

#include <algorithm>
#include <array>
#include <utility>

namespace brevlin {

namespace {

using Lasts = NotificationSilencer::Lasts;

template <typename Switch>
std::unique_ptr<DoNotDisturbSwitch> made(MessageBus& bus)
{
    return std::make_unique<Switch>(bus);
}

struct Known
{
    std::string_view serverName;
    std::string_view name;
    Lasts lasts = Lasts::always;
    std::unique_ptr<DoNotDisturbSwitch> (*make)(MessageBus&) = nullptr;
};

constexpr std::array known{
    Known{"dunst", "dunst", Lasts::whileServerRuns, made<DunstSwitch>},
    Known{"Plasma", "plasma", Lasts::whileProgramRuns, made<PlasmaInhibition>},
    Known{"Xfce Notify Daemon", "xfce", Lasts::always, made<XfceSwitch>},
    Known{"gnome-shell", "gnome", Lasts::always,
          [](MessageBus& bus) {
              return makeSettingsSwitch(bus, {"org.gnome.desktop.notifications",
                                              "/org/gnome/desktop/notifications/", "show-banners", true});
          }},
    Known{"cinnamon", "cinnamon", Lasts::always,
          [](MessageBus& bus) {
              return makeSettingsSwitch(bus, {"org.cinnamon.desktop.notifications",
                                              "/org/cinnamon/desktop/notifications/", "display-notifications",
                                              true});
          }},
    // MATE's, older ones of which lack the key, as GNOME's former one of the same name lacks the schema.
    Known{"Notification Daemon", "mate", Lasts::always,
          [](MessageBus& bus) {
              return makeSettingsSwitch(bus, {"org.mate.NotificationDaemon", "/org/mate/notification-daemon/",
                                              "do-not-disturb", false});
          }},
};

const Known* find(std::string_view Known::*field, std::string_view text)
{
    const auto* found =
        std::find_if(known.begin(), known.end(), [&](const Known& each) { return each.*field == text; });
    return found == known.end() ? nullptr : found;
}

} // namespace

void DoNotDisturbSwitch::tell(bool isOn)
{
    const auto before = std::exchange(m_known, isOn);
    if (before && *before != isOn) {
        Q_EMIT turned(isOn);
    }
}

std::optional<NotificationSilencer::Switch> switchOfServer(std::string_view serverName)
{
    const Known* found = find(&Known::serverName, serverName);
    return found != nullptr
               ? std::optional{NotificationSilencer::Switch{std::string(found->name), found->lasts}}
               : std::nullopt;
}

std::unique_ptr<DoNotDisturbSwitch> makeSwitch(std::string_view name, MessageBus& bus)
{
    const Known* found = find(&Known::name, name);
    return found != nullptr ? found->make(bus) : nullptr;
}

} // namespace brevlin
