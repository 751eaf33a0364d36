#include "preview/decoder/SvgFilter.hpp"

#include "preview/decoder/UnpackedFile.hpp"

#include <QBuffer>
#include <QHash>
#include <QImageReader>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstdint>
#include <vector>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

constexpr qint64 maxDrawingBytes = qint64{8} << 20U;
constexpr qsizetype maxStyleLength = qsizetype{256} << 10U;
constexpr std::uint64_t maxWork = 100'000;
constexpr std::size_t maxDepth = 200;
constexpr qint64 maxImageBytes = qint64{64} << 20U;
/// Text of attributes (paths, above all) that counts as much as an element.
constexpr qsizetype attributeShare = 64;

/// Copies a drawing and counts what drawing it will take.
class SvgCopy {
public:
    explicit SvgCopy(const QByteArray &source) : m_reader(source), m_writer(&m_copy) {}

    std::optional<FilteredSvg> made()
    {
        while (!m_reader.atEnd()) {
            if (!copyToken(m_reader.readNext())) {
                return std::nullopt;
            }
        }
        // A drawing that breaks off is refused, although Qt would draw its beginning: the count of
        // its work is not complete.
        const std::uint64_t work = m_reader.hasError() ? maxWork + 1 : workOf(0);
        return work <= maxWork ? std::optional(FilteredSvg{std::move(m_copy), work}) : std::nullopt;
    }

private:
    /// An element with an "id", or the document: what is drawn for it. Work inside an element with
    /// an id counts for that one, and for those around it by way of `used`.
    struct Part {
        std::uint64_t work = 0;
        std::vector<QString> usedIds;
        std::vector<std::size_t> usedParts;
        enum class Visit : std::uint8_t { open, running, done } visit = Visit::open;
        std::uint64_t total = 0;
    };

    bool copyToken(QXmlStreamReader::TokenType token)
    {
        switch (token) {
        case QXmlStreamReader::StartElement:
            return copyElement();
        case QXmlStreamReader::EndElement:
            m_open.pop_back();
            m_writer.writeEndElement();
            return true;
        case QXmlStreamReader::Characters:
            // Qt matches every rule of a style sheet with every element.
            m_styleLength += m_isStyle ? m_reader.text().size() : 0;
            m_writer.writeCharacters(m_reader.text().toString());
            return m_styleLength <= maxStyleLength;
        default:
            return true; // comments, instructions, the document type: nothing that is drawn
        }
    }

    bool copyElement()
    {
        // The renderer recurses, and would overflow its stack.
        if (m_open.size() >= maxDepth) {
            return false;
        }
        const QXmlStreamAttributes attributes = m_reader.attributes();
        const std::size_t parent = m_open.empty() ? 0 : m_open.back();
        std::size_t part = parent;
        const QStringView plainId = attributes.value("id"_L1);
        if (const auto id = plainId.isEmpty() ? attributes.value("xml:id"_L1) : plainId;
            !id.isEmpty()) {
            part = m_parts.size();
            m_parts.emplace_back();
            m_parts[parent].usedParts.push_back(part);
            m_partsOfId.insert(id.toString(), part);
        }
        // Elements without an id belong to the part around them: nothing can refer to them alone.
        m_open.push_back(part);
        m_isStyle = m_reader.name() == "style"_L1;

        m_writer.writeStartElement(m_reader.qualifiedName().toString());
        for (const QXmlStreamNamespaceDeclaration &space : m_reader.namespaceDeclarations()) {
            const QString prefix = space.prefix().toString();
            m_writer.writeAttribute(prefix.isEmpty() ? u"xmlns"_s : u"xmlns:"_s + prefix,
                                    space.namespaceUri().toString());
        }
        qsizetype length = 0;
        for (const QXmlStreamAttribute &attribute : attributes) {
            if (attribute.name() != "href"_L1) {
                length += attribute.value().size();
                copyAttribute(attribute);
                continue;
            }
            // Only references inside the drawing. All other targets are left out: files and
            // addresses.
            if (attribute.value().startsWith(u'#')) {
                m_parts[part].usedIds.push_back(attribute.value().mid(1).toString());
                copyAttribute(attribute);
            } else if (isSmallImage(attribute.value())) {
                copyAttribute(attribute);
            }
        }
        m_parts[part].work += 1 + static_cast<std::uint64_t>(length / attributeShare);
        return true;
    }

    /// By its name as it stands, so that the prefixes stay those that were declared.
    void copyAttribute(const QXmlStreamAttribute &attribute)
    {
        m_writer.writeAttribute(attribute.qualifiedName().toString(), attribute.value().toString());
    }

    /// Whether this is an image inside the drawing, of a format that refers to nothing else.
    bool isSmallImage(QStringView url)
    {
        const qsizetype comma = url.indexOf(u',');
        if (!url.startsWith("data:"_L1) || comma < 0 || !url.first(comma).endsWith(";base64"_L1)) {
            return false;
        }
        QBuffer image;
        image.setData(QByteArray::fromBase64(url.mid(comma + 1).toLatin1()));
        image.open(QIODevice::ReadOnly);
        const QByteArray format = QImageReader::imageFormat(&image);
        // By the content: the type in the address may be a lie, and an SVG image could nest
        // drawings.
        if (format != "png" && format != "jpeg" && format != "gif") {
            return false;
        }
        const QSize size = QImageReader(&image, format).size();
        if (!size.isValid()) {
            return false;
        }
        // The renderer decodes each image whole, at full size.
        m_imageBytes += qint64{size.width()} * size.height() * 4;
        return m_imageBytes <= maxImageBytes;
    }

    /// What drawing a part takes, with all that it refers to; more than `maxWork` when that never
    /// ends. References are followed without recursion, however long their chain is.
    std::uint64_t workOf(std::size_t root)
    {
        std::vector<std::size_t> path{root};
        while (!path.empty()) {
            Part &part = m_parts[path.back()];
            // Depth first with an explicit stack: open, on the path, done.
            if (part.visit == Part::Visit::open) {
                part.visit = Part::Visit::running;
                for (const QString &id : part.usedIds) {
                    const auto [first, last] = m_partsOfId.equal_range(id);
                    std::for_each(first, last,
                                  [&](std::size_t used) { part.usedParts.push_back(used); });
                }
                for (const std::size_t used : part.usedParts) {
                    if (m_parts[used].visit == Part::Visit::running) {
                        return maxWork + 1; // a cycle
                    }
                    if (m_parts[used].visit == Part::Visit::open) {
                        path.push_back(used);
                    }
                }
                continue;
            }
            if (part.visit == Part::Visit::running) {
                part.visit = Part::Visit::done;
                part.total = part.work;
                for (const std::size_t used : part.usedParts) {
                    // Capped, since a chain of parts that use the next one twice doubles at each
                    // step and would overflow.
                    part.total = std::min(part.total + m_parts[used].total, maxWork + 1);
                }
            }
            path.pop_back();
        }
        return m_parts[root].total;
    }

    QXmlStreamReader m_reader;
    QByteArray m_copy;
    QXmlStreamWriter m_writer;
    std::vector<Part> m_parts{Part()};            ///< the first is the document
    QMultiHash<QString, std::size_t> m_partsOfId; ///< an id may stand more than once
    std::vector<std::size_t> m_open;              ///< the part that each open element belongs to
    bool m_isStyle = false;
    qsizetype m_styleLength = 0;
    qint64 m_imageBytes = 0;
};

} // namespace

std::optional<FilteredSvg> filteredSvg(QIODevice &device)
{
    const auto source = unpackedFile(device, maxDrawingBytes);
    return source ? SvgCopy(*source).made() : std::nullopt;
}

} // namespace tessaly
