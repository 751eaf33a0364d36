#pragma once

#include <QColor>
#include <QPalette>

class QApplication;
class QWidget;

namespace tessaly {

/// The colours of the program, light on dark grey.
namespace theme {

inline constexpr QColor window{0x5e, 0x5e, 0x5e};
inline constexpr QColor backdrop{0x26, 0x26, 0x26}; ///< around a window in full screen
inline constexpr QColor sidebar{0x4b, 0x4b, 0x4b};
inline constexpr QColor sheet{0x66, 0x66, 0x66}; ///< what slides over the window
inline constexpr QColor sheetEdge{0x2e, 0x2e, 0x2e};
inline constexpr QColor group{0x5a, 0x5a, 0x5a}; ///< the boxes on a sheet
inline constexpr QColor separator{0x4a, 0x4a, 0x4a};
inline constexpr QColor evenRow{0x53, 0x53, 0x53};
inline constexpr QColor oddRow{0x58, 0x58, 0x58};
inline constexpr QColor selectedRow{0x3f, 0x5e, 0x93};
inline constexpr QColor selection{0x2f, 0x6f, 0xe4}; ///< the sidebar's, menus', texts'
inline constexpr QColor focusRing{0x7d, 0xb4, 0xff};
inline constexpr QColor text{0xff, 0xff, 0xff};
inline constexpr QColor dimmedText{0xdc, 0xdc, 0xdc}; ///< second lines, units
inline constexpr QColor disabledText{0xb0, 0xb0, 0xb0};
inline constexpr QColor link{0xc4, 0xde, 0xff};
inline constexpr QColor field{0x43, 0x43, 0x43}; ///< what text is typed into
inline constexpr QColor button{0x68, 0x68, 0x68};
inline constexpr QColor lightButton{0xe2, 0xe2, 0xe2};
inline constexpr QColor lightButtonDisabledText{0x8a, 0x8a, 0x8a};
inline constexpr QColor toolTip{0x2e, 0x2e, 0x2e};

} // namespace theme

/// These colours as Qt takes them.
[[nodiscard]] QPalette themePalette();

/// Gives the whole program its look: style and colours. Once, before the first widget.
void applyTheme();
/// The rest of it: font and icon. Once, before the first text; it reads the fonts that the desktop
/// has, and so takes longer than all else that an empty window needs. The font is Inter where it is
/// installed, at the size that the user has chosen.
void applyFontAndIcon(QApplication &application);

// Texts of other ranks than the usual one, at any size of font that the user has chosen.

/// What a screen is about: its total, the title of an empty page.
void makeTitle(QWidget &label);
/// What is said beside: dates, units.
void makeCaption(QWidget &label);

} // namespace tessaly
