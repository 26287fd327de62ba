#include "ui/screens/about/product.h"

#include "brevlin_build.h"

namespace brevlin {

namespace {

constexpr BilingualText developmentBuild{"开发版本", "Development build"};

constexpr std::optional<std::string_view> unlessEmpty(std::string_view text)
{
    return text.empty() ? std::nullopt : std::optional{text};
}

} // namespace

ProductVersion productVersion()
{
    return {unlessEmpty(BREVLIN_BUILD_VERSION), unlessEmpty(BREVLIN_BUILD_REVISION)};
}

std::string versionText(const ProductVersion& version, AppLanguage language)
{
    if (!version.version) {
        return std::string(developmentBuild.in(language));
    }
    std::string text(*version.version);
    if (version.revision) {
        text += " (" + std::string(*version.revision) + ")";
    }
    return text;
}

} // namespace brevlin
