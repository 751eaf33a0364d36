#include "preview/TextDecoder.hpp"

#include <QStringDecoder>

#include <algorithm>
#include <cstdint>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

/// Control characters that occur in binary files and not in texts.
/// Bell, backspace, tab, the line ends and form feed occur in texts, and Escape in logs with
/// colours.
bool isBinary(char byte)
{
    const auto value = static_cast<unsigned char>(byte);
    constexpr unsigned char bell = 7;
    constexpr unsigned char carriageReturn = 13;
    constexpr unsigned char escape = 27;
    return (value < bell || (value > carriageReturn && value < ' ')) && value != escape;
}

bool isControl(QChar unit)
{
    return unit.unicode() < ' ' && isBinary(static_cast<char>(unit.unicode()));
}

QString withPlainLineEnds(QString text)
{
    text.replace("\r\n"_L1, "\n"_L1);
    text.replace(u'\r', u'\n');
    // QTextDocument ends a text at its first null character.
    text.replace(u'\0', QChar(QChar::ReplacementCharacter));
    return text;
}

std::optional<QString> decoded(QByteArrayView bytes, QStringDecoder::Encoding encoding)
{
    // Strict: bytes that are not of the encoding are an error, which lets the next one be tried.
    QStringDecoder decoder(encoding);
    QString text = decoder.decode(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

/// Without a character at the end of which bytes are missing.
QByteArrayView wholeCharacters(QByteArrayView bytes)
{
    constexpr qsizetype maxCharacterLength = 4;
    for (qsizetype back = 1; back <= std::min(maxCharacterLength, bytes.size()); ++back) {
        const auto byte = static_cast<unsigned char>(bytes[bytes.size() - back]);
        // Looks back for the byte that begins the last character.
        if ((byte & 0xC0U) == 0x80U) {
            continue; // a continuation byte
        }
        const qsizetype wanted = byte >= 0xF0U ? 4 : byte >= 0xE0U ? 3 : byte >= 0xC0U ? 2 : 1;
        return wanted > back ? bytes.chopped(back) : bytes;
    }
    return bytes;
}

/// UTF-16 without a byte order mark: in most texts every other byte is 0.
std::optional<QStringDecoder::Encoding> guessedUtf16(QByteArrayView bytes)
{
    constexpr qsizetype share = 3; // at least a third of the units
    qsizetype zeros[2] = {0, 0};
    for (qsizetype i = 0; i < bytes.size(); ++i) {
        zeros[i % 2] += bytes[i] == 0 ? 1 : 0;
    }
    const qsizetype units = bytes.size() / 2;
    // The high byte of Latin letters is 0. It comes second in little endian.
    if (zeros[0] == 0 && zeros[1] > units / share) {
        return QStringDecoder::Utf16LE;
    }
    if (zeros[1] == 0 && zeros[0] > units / share) {
        return QStringDecoder::Utf16BE;
    }
    return std::nullopt;
}

} // namespace

std::optional<QString> decodeText(QByteArrayView bytes, bool isCut)
{
    // A byte order mark outweighs everything else, also bytes that look binary.
    if (const auto marked = QStringConverter::encodingForData(bytes)) {
        QStringDecoder decoder(*marked);
        // Four bytes are whole units of UTF-16 and of UTF-32. A cut pair of surrogates becomes one
        // replacement character.
        const qsizetype unit = *marked == QStringDecoder::Utf8 ? 1 : 4;
        return withPlainLineEnds(
            decoder.decode(isCut ? bytes.chopped(bytes.size() % unit) : bytes));
    }
    if (!std::any_of(bytes.begin(), bytes.end(), isBinary)) {
        const QByteArrayView whole = isCut ? wholeCharacters(bytes) : bytes;
        if (auto text = decoded(whole, QStringDecoder::Utf8)) {
            return withPlainLineEnds(std::move(*text));
        }
        // An older encoding of one byte for a character. Latin-1 is the usual one and cannot fail.
        return withPlainLineEnds(QString::fromLatin1(bytes));
    }
    if (const auto guessed = guessedUtf16(bytes)) {
        auto text = decoded(bytes.chopped(bytes.size() % 2), *guessed);
        // Binary files have zeros in every other byte, too, but then control characters among the
        // rest.
        if (text && std::none_of(text->begin(), text->end(), isControl)) {
            return withPlainLineEnds(std::move(*text));
        }
    }
    return std::nullopt;
}

} // namespace tessaly
