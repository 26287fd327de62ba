#pragma once

#include "platform/banner_place.h"

#include <optional>
#include <string_view>

namespace brevlin {

/// Where the notification server of this name shows its banners; nothing where they keep clear of the middle
/// of the screen's upper edge. No server tells it.
std::optional<BannerPlace> bannerPlaceOf(std::string_view serverName);

} // namespace brevlin
