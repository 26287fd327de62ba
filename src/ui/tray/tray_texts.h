#pragma once

#include "platform/status_item.h"

#include <string_view>
#include <vector>

namespace brevlin {

class AppModel;

/// The rows of the menu that are not sections of the main window; those have the section's raw value.
inline constexpr std::string_view clockRow = "clock";
inline constexpr std::string_view openPanelRow = "panel";
inline constexpr std::string_view primaryActionRow = "primaryAction";
inline constexpr std::string_view quitRow = "quit";

/// What the status item says in words, in the model's language.
StatusTexts trayTexts(const AppModel& model);
std::vector<StatusMenuRow> trayRows(const AppModel& model);

} // namespace brevlin
