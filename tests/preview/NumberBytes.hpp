#pragma once

#include <QByteArray>
#include <QtEndian>

namespace tessaly {

// Numbers as file formats store them.

template <typename Number>
[[nodiscard]] QByteArray bigEndian(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

template <typename Number>
[[nodiscard]] QByteArray littleEndian(Number number)
{
    QByteArray bytes(sizeof(Number), '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

} // namespace tessaly
