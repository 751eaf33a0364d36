#pragma once

#include <QString>

namespace tessaly {

/// A share in whole percents, two characters at least before the sign: " 7%", "45%", "100%". What
/// is not a number is "nan%". The share is a fraction, multiplied in single precision.
[[nodiscard]] QString percentText(float share);

/// A tooltip that shows the text as it is, also if it looks like markup.
[[nodiscard]] QString plainToolTip(const QString &text);

/// The tooltip of a name in a cell, given as the name's text: the whole name as it is drawn, if it
/// is so long that it may not be seen whole; otherwise none.
[[nodiscard]] QString nameToolTip(const QString &name);

} // namespace tessaly
