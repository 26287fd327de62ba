#pragma once

#include "core/language.h"

#include <optional>
#include <string>
#include <string_view>

namespace brevlin {

// Where the program's makers are found. Nowhere else in the program are these addresses written.
inline constexpr std::string_view productSite = "https://brevlin.example";
inline constexpr std::string_view productSiteHost = "brevlin.example";
inline constexpr std::string_view contactAddress = "hello@brevlin.example";

/// What this build calls itself. A build without a version was made by hand; one outside a checkout has no
/// revision.
struct ProductVersion
{
    std::optional<std::string_view> version;
    std::optional<std::string_view> revision;
};

/// Of this build: the project's version and the revision of the checkout that it was built from.
ProductVersion productVersion();

/// "1.2 (45)", "1.2" or, without a version, "Development build".
std::string versionText(const ProductVersion& version, AppLanguage language);

} // namespace brevlin
