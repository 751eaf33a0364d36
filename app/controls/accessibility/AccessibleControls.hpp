#pragma once

namespace tessaly {

/// Tells Qt what assistive technology is to see of the controls whose role it cannot know: the
/// main window, sheets and their groups, alerts, names and paths, tables of cells, spoken notices.
///
/// Once, after the QApplication was made and before the first widget.
/// Threads: the main thread.
void installAccessibleControls();

} // namespace tessaly
