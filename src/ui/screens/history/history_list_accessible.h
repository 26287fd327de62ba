#pragma once

#include <cstddef>

namespace brevlin {

class HistoryList;

/// Lets assistive technology see the history as a list of rows, each of which is one element. Calling it
/// again changes nothing.
void installHistoryAccessibility();
/// Tells it which row the keyboard acts on now.
void tellFocusedHistoryRow(HistoryList& list, std::size_t row);

} // namespace brevlin
