#pragma once

namespace tessaly {

class KORVENProgressBar;

/// Warns of a large share, as a fraction: the bar turns yellow from eight tenths on and red beyond
/// nine tenths. Below that, and if the share is not a number, it keeps its colour.
void setWarningColors(KORVENProgressBar &bar, float share);

} // namespace tessaly
