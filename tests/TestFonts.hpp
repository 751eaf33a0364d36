#pragma once

namespace tessaly {

/// Gives this process the fonts of tests/data/fonts.conf and no others. Before the application
/// object is made.
void useTestFonts();

} // namespace tessaly
