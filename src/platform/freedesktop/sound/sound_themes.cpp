#include "platform/freedesktop/sound/sound_themes.h"

#include <filesystem>

namespace brevlin {

std::optional<std::string> themeSoundFile(const std::vector<std::string>& dataFolders,
                                          const std::string& theme, const std::string& name)
{
    const std::string fallback = "freedesktop";
    for (const std::string& candidate : {theme, fallback}) {
        for (const std::string& folder : dataFolders) {
            const auto file =
                std::filesystem::path{folder} / "sounds" / candidate / "stereo" / (name + ".wav");
            std::error_code ignored; // what cannot be looked at is not there for us
            if (!candidate.empty() && std::filesystem::is_regular_file(file, ignored)) {
                return file.string();
            }
        }
    }
    return std::nullopt;
}

} // namespace brevlin
