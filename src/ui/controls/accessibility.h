#pragma once

namespace brevlin {

/// Teaches Qt what our widgets are to assistive technology. The widgets that need it call it; calling it
/// again changes nothing.
void installAccessibility();

} // namespace brevlin
