#pragma once

#include <QString>

namespace tessaly {

/// A tooltip that shows the text as it is, whatever markup it holds, and wraps it.
[[nodiscard]] inline QString plainToolTip(const QString &text)
{
    return QStringLiteral("<p style=\"white-space: pre-wrap\">%1</p>").arg(text.toHtmlEscaped());
}

} // namespace tessaly
