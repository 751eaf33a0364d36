#pragma once

#include "history/records/HistoryFile.hpp"

namespace tessaly {

/// Sorts records by their "scanDate", newest first. Those without a date come last.
void sortNewestFirst(HistoryRecords &records);

/// Sorts records by their "scanPath": the whole path, by its code units (see compareByCodeUnits()).
/// Those without a path come first.
void sortByPath(HistoryRecords &records);

// Both leave records of equal values in the order in which they stood.

} // namespace tessaly
