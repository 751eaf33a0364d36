#pragma once

#include <QFont>
#include <QString>

class QScreen;

namespace tessaly {

/// A text with a line break wherever it gets wider than `width`: between words, and inside of a
/// word that is wider than that alone, such as a file name. From more than `maxLineCount` lines the
/// middle ones are left out, with an ellipsis in their place.
///
/// Units:    pixels, at the resolution that the font is drawn in.
/// Requires: `maxLineCount` is at least 2.
[[nodiscard]] QString wrappedText(const QString &text, const QFont &font, int width,
                                  int maxLineCount);

/// A tooltip with the text, in lines of at most half the screen's width.
[[nodiscard]] QString wrappedToolTip(const QString &text, const QScreen &screen);

} // namespace tessaly
