#pragma once

#include <QColor>
#include <QPalette>
#include <QString>

#include <initializer_list>
#include <utility>

class QApplication;
class QWidget;

namespace tessaly {

/// The colours of the program, light on dark grey. No other file has any.
namespace theme {

/// A colour by its parts, from 0 to 1, where eight bits are too coarse.
struct Fractions {
    float red;
    float green;
    float blue;
    float alpha = 1.0F;

    /// Parts beyond 0 and 1 count as those.
    operator QColor() const; // NOLINT(google-explicit-constructor): is a colour
};

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
inline constexpr QColor placeholderText{0xb0, 0xb0, 0xb0}; ///< in an empty field
inline constexpr QColor link{0xc4, 0xde, 0xff};
inline constexpr QColor field{0x43, 0x43, 0x43}; ///< what text is typed into
inline constexpr QColor button{0x68, 0x68, 0x68};
inline constexpr QColor buttonHover{0xff, 0xff, 0xff, 26}; ///< laid over the button
inline constexpr QColor lightButton{0xe2, 0xe2, 0xe2};
inline constexpr QColor lightButtonText{0x00, 0x00, 0x00};
inline constexpr QColor lightButtonDisabledText{0x8a, 0x8a, 0x8a};
inline constexpr QColor toolTip{0x2e, 0x2e, 0x2e};
inline constexpr QColor shadow{0x00, 0x00, 0x00}; ///< of a sheet, in layers of little opacity

/// The main window, below all that it shows.
inline constexpr Fractions windowGround{0.36718F, 0.36718F, 0.36718F};
inline constexpr QColor windowEdge{0x00, 0x00, 0x00, 110}; ///< sets it off from dark ones

namespace title_bar {

// From its upper edge to its middle, and from there to its lower edge.
inline constexpr Fractions dark{0.2F, 0.2F, 0.2F};
inline constexpr Fractions light{0.25F, 0.25F, 0.25F};
inline constexpr QColor line{0x00, 0x00, 0x00};
inline constexpr QColor disc{0x6b, 0x6b, 0x6b}; ///< a round button
inline constexpr QColor closeDisc{0xe0, 0x59, 0x4f};
inline constexpr QColor inactiveDisc{0x55, 0x55, 0x55};
inline constexpr QColor discEdge{0x30, 0x30, 0x30};
inline constexpr QColor sign{0xff, 0xff, 0xff}; ///< what is drawn on a disc
inline constexpr QColor closeSign{0x4a, 0x0d, 0x08};
inline constexpr QColor menuLines{0xdd, 0xdd, 0xdd};
inline constexpr QColor inactiveMenuLines{0x90, 0x90, 0x90};
inline constexpr QColor menuHover{0xff, 0xff, 0xff, 28};
inline constexpr QColor menuPressed{0xff, 0xff, 0xff, 50};

} // namespace title_bar

namespace bar {

inline constexpr Fractions blue{0.011F, 0.356F, 1.0F, 0.75F};
inline constexpr Fractions green{0.011F, 0.992F, 0.011F, 0.95F};
inline constexpr Fractions orange{1.0F, 0.792F, 0.019F};
inline constexpr Fractions yellow{1.0F, 1.0F, 0.0F};
inline constexpr Fractions red{1.0F, 0.0F, 0.0F};
inline constexpr Fractions ground{0.9294F, 0.9294F, 0.9294F}; ///< is never drawn
/// White in fact: these parts are required, and count as 1.
inline constexpr Fractions track{80.0F, 80.0F, 80.0F, 0.8F};

} // namespace bar

/// The preview panel, darker than the program: so what it shows stands out.
namespace preview {

inline constexpr QColor window{0x2b, 0x2b, 0x2b};
inline constexpr QColor headerTop{0x48, 0x48, 0x48};
inline constexpr QColor headerBottom{0x38, 0x38, 0x38};
inline constexpr QColor line{0x1e, 0x1e, 0x1e};    ///< around the window, below its header
inline constexpr QColor page{0x22, 0x22, 0x22};    ///< behind contents
inline constexpr QColor paper{0xff, 0xff, 0xff};   ///< of documents
inline constexpr QColor checker{0xe6, 0xe6, 0xe6}; ///< with paper, behind transparent images
inline constexpr QColor video{0x00, 0x00, 0x00};   ///< around a picture
inline constexpr QColor text{0xee, 0xee, 0xee};
inline constexpr QColor dimText{0xa8, 0xa8, 0xa8};
inline constexpr QColor lineNumber{0x78, 0x78, 0x78};
inline constexpr QColor message{0xf2, 0xc1, 0x66}; ///< why there is no preview
inline constexpr QColor accent{0x3b, 0x7d, 0xf6};
inline constexpr QColor selectedText{0xff, 0xff, 0xff};
inline constexpr QColor close{0xe0, 0x5a, 0x4b}; ///< below the pointer
inline constexpr QColor glyphHover{0xff, 0xff, 0xff, 34};
inline constexpr QColor glyphPressed{0xff, 0xff, 0xff, 60};
inline constexpr QColor disabledGlyph{0xee, 0xee, 0xee, 80};
inline constexpr QColor scrollHandle{0x6a, 0x6a, 0x6a};
inline constexpr QColor scrollHandleHover{0x80, 0x80, 0x80};
inline constexpr QColor groove{0x55, 0x55, 0x55}; ///< of the slider
inline constexpr QColor focusedKnob{0x9d, 0xc0, 0xff};
inline constexpr QColor toolTip{0x3a, 0x3a, 0x3a};
// The icon of a file whose type has none.
inline constexpr QColor sheetTop{0xfa, 0xfa, 0xfa};
inline constexpr QColor sheetBottom{0xd8, 0xda, 0xde};
inline constexpr QColor sheetCorner{0xc2, 0xc6, 0xcc};
inline constexpr QColor sheetEdge{0x00, 0x00, 0x00, 90};
inline constexpr QColor sheetText{0x70, 0x76, 0x80};

} // namespace preview

/// The window with what is known about an item.
namespace information {

inline constexpr QColor window{0x66, 0x66, 0x66};
inline constexpr QColor section{0x54, 0x54, 0x54};
inline constexpr QColor text{0xff, 0xff, 0xff};
inline constexpr QColor caption{0xd6, 0xd6, 0xd6};
inline constexpr QColor selection{0x2e, 0x6f, 0xe0};
inline constexpr QColor focusRing{0xa9, 0xcb, 0xff};

} // namespace information

} // namespace theme

/// These colours as Qt takes them: for the program, and for the preview panel.
[[nodiscard]] QPalette themePalette();
[[nodiscard]] QPalette previewPalette();

/// A style sheet with colours in place of their names: "@text" for the pair {"text", …}. A name
/// ends where its letters do.
[[nodiscard]] QString
styleSheetWithColors(const QString &styleSheet,
                     std::initializer_list<std::pair<QLatin1StringView, QColor>> colors);

/// Gives the whole program its look: style and colours. Once, before the first widget.
void applyTheme();
/// Gives it its font: Inter where that is installed, at the size that the user has chosen. Once,
/// before the first text. Reads the fonts of the desktop, which takes longer than all else that an
/// empty window needs.
void applyFont(QApplication &application);

// Texts of other ranks than the usual one, at any size of font that the user has chosen.

/// What a screen is about: its total, the title of an empty page.
void makeTitle(QWidget &label);
/// What is said beside: dates, units.
void makeCaption(QWidget &label);

} // namespace tessaly
