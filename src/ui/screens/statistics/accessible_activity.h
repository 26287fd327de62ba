#pragma once

namespace brevlin {

/// Teaches Qt what the bars and cells of a chart are to assistive technology. Calling it again changes
/// nothing.
void installAccessibleActivity();

} // namespace brevlin
