#pragma once

#include <string>

namespace tessaly::tree {

/// A byte count as a text with two decimals in decimal units: "1.50 KB", "2.00 MB", "35.10 GB",
/// "1.20 TB". The smallest unit is the kilobyte ("0.00 KB"), the largest the terabyte. Rounding
/// happens after the unit is chosen, so 999,999 bytes are "1000.00 KB". The decimal sign is a point
/// in every locale. A value that is not a number reads as terabytes ("nan TB").
///
/// Which numbers are shown as a placeholder (see SizeNumber) is up to the caller.
[[nodiscard]] std::string sizeText(double byteCount);

} // namespace tessaly::tree
