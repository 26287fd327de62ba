#include "platform/freedesktop/notifications/banner_places.h"

namespace brevlin {

// As seen on GNOME 43, MATE 1.26 and Cinnamon 5.6 with their own themes.
std::optional<BannerPlace> bannerPlaceOf(std::string_view serverName)
{
    using enum BannerPlace::Position;
    if (serverName == "gnome-shell") {
        return BannerPlace{topCentre, 520, 190, true};
    }
    if (serverName == "Notification Daemon") { // MATE's
        return BannerPlace{topRight, 460, 132, false};
    }
    if (serverName == "cinnamon") {
        return BannerPlace{topRight, 460, 124, false};
    }
    return std::nullopt;
}

} // namespace brevlin
