#include "app/controls/tables/CellTexts.hpp"

#include "app/controls/text/NameLabel.hpp"

#include <QTextDocument>

#include <array>
#include <cmath>
#include <cstdio>

namespace tessaly {

using namespace Qt::StringLiterals;

namespace {

/// From this length on a name has a tooltip.
constexpr int longName = 21;

} // namespace

QString percentText(float share)
{
    if (std::isnan(share)) {
        return u"nan%"_s; // of either sign
    }
    std::array<char, 64> text;
    std::snprintf(text.data(), text.size(), "%2.0f%%", static_cast<double>(100.0F * share));
    return QString::fromLatin1(text.data());
}

QString plainToolTip(const QString &text)
{
    return Qt::mightBeRichText(text) ? text.toHtmlEscaped() : text;
}

QString nameToolTip(const QString &name)
{
    return name.size() < longName ? QString() : plainToolTip(drawableText(name));
}

} // namespace tessaly
