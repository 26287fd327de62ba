#pragma once

#include <string_view>
#include <vector>

namespace brevlin {

/// The labels of an intention in their order, without their `#`, each once: what follows a `#` as far as
/// letters, digits, `_` and `-` of any language go. One behind a letter or digit of ASCII (`C#`, `page#3`)
/// begins none. The views live as long as the text.
std::vector<std::string_view> intentionLabels(std::string_view intention);

} // namespace brevlin
