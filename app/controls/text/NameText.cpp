#include "app/controls/text/NameText.hpp"

#include "engine/tree/EscapedName.hpp"

namespace tessaly {

QString textOfName(std::string_view name)
{
    // The common case. A level may have a million names, and this needs no decoding.
    if (tree::isAscii(name)) {
        return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
    }
    const std::u16string text = tree::escapedName(name);
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

std::string nameOfText(const QString &text)
{
    return tree::nameFromEscaped(text.toStdU16String());
}

} // namespace tessaly
