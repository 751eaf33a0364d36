#include "app/controls/text/NameText.hpp"

#include "engine/tree/EscapedName.hpp"

namespace tessaly {

QString textOfName(std::string_view name)
{
    if (isAscii(name)) {
        return QString::fromLatin1(name.data(), static_cast<qsizetype>(name.size()));
    }
    const std::u16string text = escapedName(name);
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

std::string nameOfText(const QString &text)
{
    return nameFromEscaped(text.toStdU16String());
}

} // namespace tessaly
