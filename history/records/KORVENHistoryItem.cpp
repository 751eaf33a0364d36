#include "history/records/KORVENHistoryItem.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"
#include "platform/DocumentsFolder.hpp"

#include <QUuid>

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace tessaly {

namespace {

/// What diagnostics and file names say in place of an empty value.
constexpr std::string_view emptyValue = "(null)";
constexpr std::string_view archiveSuffix = ".archive";

enum Key : std::size_t { classKey, pathKey, totalKey, uuidKey, dateKey };
// In the order of Key. The names are part of the file format.
constexpr std::array<std::string_view, 5> keys{"$class", "scanPath", "scanTotal", "scanKey",
                                               "scanDate"};

std::optional<std::string> textIn(const archive::KeyedArchiveReader &archive,
                                  const archive::KeyedArchiveReader::Fields &fields, Key key)
{
    if (!fields[key]) {
        return std::nullopt;
    }
    const auto string = archive.string(*fields[key], keys[key]);
    return string.type == archive::KeyedArchiveReader::Type::null
               ? std::nullopt
               : std::optional(archive.name(string));
}

/// Whether both are the same but for the case of ASCII letters, in which some file systems see no
/// difference.
bool isSameFileName(std::string_view a, std::string_view b) noexcept
{
    const auto lowered = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char left, char right) { return lowered(left) == lowered(right); });
}

/// A key of ours is a UUID; one out of a damaged file may be anything.
bool namesAScan(std::string_view key) noexcept
{
    constexpr std::size_t maxFileNameBytes = 255;
    constexpr std::array<std::string_view, 3> otherFiles{"scanHistory", "scanhome", "scan"};
    return !key.empty() && key != "." && key != ".." && key.find('/') == std::string_view::npos &&
           // The system would cut the path at a NUL, and so name another file.
           key.find('\0') == std::string_view::npos &&
           key.size() + archiveSuffix.size() <= maxFileNameBytes &&
           std::none_of(otherFiles.begin(), otherFiles.end(),
                        [&](std::string_view name) { return isSameFileName(key, name); });
}

} // namespace

std::string KORVENHistoryItem::UUIDString()
{
    // Upper case is part of the file names and of the settings' keys; ScanFiles recognises them by
    // it.
    return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

KORVENHistoryItem::KORVENHistoryItem(std::string scanPath, std::string scanTotal)
    : m_scanPath(std::move(scanPath)), m_scanTotal(std::move(scanTotal)), m_scanKey(UUIDString()),
      m_scanDate(archive::Timestamp::now())
{
}

KORVENHistoryItem::KORVENHistoryItem(const archive::KeyedArchiveReader &archive,
                                     archive::KeyedArchiveReader::Uid object)
{
    archive::KeyedArchiveReader::NameMatcher names{keys[classKey], keys[pathKey], keys[totalKey],
                                                   keys[uuidKey], keys[dateKey]};
    archive::KeyedArchiveReader::NameMatcher classes{className};
    const auto fields = archive.fields(archive.object(object), names);
    // An object of another class would otherwise read as a record without any values.
    if (!fields[classKey] || archive.classIndex(*fields[classKey], classes) != 0) {
        throw archive::ArchiveFailure(archive::ArchiveError::Kind::unsupported,
                                      "a record of an unknown class");
    }
    m_scanPath = textIn(archive, fields, pathKey);
    m_scanTotal = textIn(archive, fields, totalKey);
    m_scanKey = textIn(archive, fields, uuidKey);
    if (fields[dateKey]) {
        if (const auto seconds = archive.date(*fields[dateKey], keys[dateKey])) {
            m_scanDate = archive::Timestamp{*seconds};
        }
    }
}

void KORVENHistoryItem::encodeWithCoder(archive::KeyedArchiveWriter &archive,
                                        archive::KeyedArchiveWriter::Uid place) const
{
    const auto text = [&archive](const std::optional<std::string> &value) {
        return value ? archive.string(*value) : archive::KeyedArchiveWriter::Uid::null;
    };
    // One after the other: this is also the order in which the values stand in the file.
    const auto path = text(m_scanPath);
    const auto total = text(m_scanTotal);
    const auto key = text(m_scanKey);
    const auto date = m_scanDate ? archive.date(m_scanDate->secondsSince2001)
                                 : archive::KeyedArchiveWriter::Uid::null;
    archive.instance(place, archive.classNamed(className, {"NSObject"}),
                     {{keys[pathKey], path},
                      {keys[totalKey], total},
                      {keys[uuidKey], key},
                      {keys[dateKey], date}});
}

std::optional<std::string> KORVENHistoryItem::scanFilePath() const
{
    // The file of this path gets deleted with the record, so a damaged key must not lead to any
    // other file.
    if (m_scanKey && !namesAScan(*m_scanKey)) {
        return std::nullopt;
    }
    std::string path = services().documents.path();
    path += '/';
    // A record without a key still has a file name, so that it can be removed with its file.
    path += m_scanKey.value_or(std::string(emptyValue));
    path += archiveSuffix;
    return path;
}

KORVENHistoryItem::Value KORVENHistoryItem::valueForKey(std::string_view key) const
{
    if (key == keys[pathKey] && m_scanPath) {
        return *m_scanPath;
    }
    if (key == keys[dateKey] && m_scanDate) {
        return *m_scanDate;
    }
    return {};
}

std::string KORVENHistoryItem::description() const
{
    const std::string empty(emptyValue);
    return "\nPATH: " + m_scanPath.value_or(empty) + "\nTOTL: " + m_scanTotal.value_or(empty) +
           "\nUUID: " + m_scanKey.value_or(empty) +
           "\nDATE: " + (m_scanDate ? m_scanDate->description() : empty);
}

} // namespace tessaly
