#pragma once

#include <QColor>

namespace tessaly::preview_colors {

inline constexpr QColor window{0x2B, 0x2B, 0x2B};
inline constexpr QColor headerTop{0x48, 0x48, 0x48};
inline constexpr QColor headerBottom{0x38, 0x38, 0x38};
inline constexpr QColor line{0x1E, 0x1E, 0x1E};
inline constexpr QColor page{0x22, 0x22, 0x22}; ///< behind contents
inline constexpr QColor text{0xEE, 0xEE, 0xEE};
inline constexpr QColor dimText{0xA8, 0xA8, 0xA8};
inline constexpr QColor accent{0x3B, 0x7D, 0xF6};
inline constexpr QColor close{0xE0, 0x5A, 0x4B};

} // namespace tessaly::preview_colors
