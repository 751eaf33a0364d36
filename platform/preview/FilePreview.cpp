#include "platform/preview/FilePreview.hpp"

#include "engine/PrintableText.hpp"
#include "platform/preview/ImageDecoder.hpp"
#include "platform/preview/TextDecoder.hpp"

#include <QCoreApplication>
#include <QMimeDatabase>

#include <algorithm>
#include <array>
#include <new>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

using Kind = PreviewFileStatus::Kind;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(FilePreview)
};

QString typeNameOf(Kind kind)
{
    switch (kind) {
    case Kind::folder:
        return u"inode/directory"_s;
    case Kind::pipe:
        return u"inode/fifo"_s;
    case Kind::socket:
        return u"inode/socket"_s;
    case Kind::device:
        return u"inode/chardevice"_s;
    default:
        return u"application/octet-stream"_s;
    }
}

QString messageOf(PreviewFile::Error error)
{
    switch (error) {
    case PreviewFile::Error::missing:
        return Texts::tr("This file is no longer there.");
    case PreviewFile::Error::forbidden:
        return Texts::tr("You are not allowed to read this file.");
    case PreviewFile::Error::notRegular:
        return Texts::tr("Only files have a preview.");
    default:
        return Texts::tr("This file cannot be read.");
    }
}

void describe(PreviewInfo &info, const QMimeType &type)
{
    info.type = type.isDefault() ? Texts::tr("File of unknown type") : type.comment();
    info.iconName = type.iconName();
}

/// Formats that name other files or addresses, which a player would go to.
bool isPlaylist(const QString &type, const QByteArray &head)
{
    constexpr std::array<const char *, 4> names{"mpegurl", "playlist", "scpls", "asx"};
    constexpr std::array<const char *, 5> starts{"#EXT", "ffconcat", "[playlist]", "<", "v=0"};
    return std::any_of(names.begin(), names.end(),
                       [&](const char *name) { return type.contains(QLatin1StringView(name)); }) ||
           std::any_of(starts.begin(), starts.end(),
                       [&](const char *start) { return head.trimmed().startsWith(start); });
}

bool isMedia(const QString &type)
{
    return type.startsWith("audio/"_L1) || type.startsWith("video/"_L1) ||
           type == "application/ogg"_L1 || type == "application/vnd.rn-realmedia"_L1;
}

PreviewContent imageContent(DecodedImage decoded, bool isDrawing)
{
    switch (decoded.problem) {
    case ImageProblem::none:
        return std::move(decoded.image);
    case ImageProblem::tooLarge:
        return PreviewCard{isDrawing
                               ? Texts::tr("This drawing is damaged, or too large to preview.")
                               : Texts::tr("This image is too large to preview.")};
    default:
        return PreviewCard{Texts::tr("This image cannot be read. It may be damaged.")};
    }
}

PreviewText textContent(QString text, bool isCut)
{
    qsizetype end = -1;
    for (qsizetype line = 0; line < previewTextLineCount; ++line) {
        end = text.indexOf(u'\n', end + 1);
        if (end < 0) {
            return {std::move(text), isCut ? PreviewText::Cut::bytes : PreviewText::Cut::none};
        }
    }
    if (end + 1 == text.size() && !isCut) {
        return {std::move(text), PreviewText::Cut::none};
    }
    text.truncate(end);
    return {std::move(text), PreviewText::Cut::lines};
}

PreviewContent contentOf(std::shared_ptr<PreviewFile> file, const QMimeType &type,
                         const QByteArray &head, QSize bounds)
{
    const QString name = type.name();
    file->seek(0);
    if (name == "image/svg+xml"_L1) {
        return imageContent(decodeSvg(*file, bounds), true);
    }
    if (name.startsWith("image/"_L1)) {
        DecodedImage decoded = decodeImage(*file, bounds);
        if (decoded.problem != ImageProblem::unreadable || !type.inherits(u"text/plain"_s)) {
            return imageContent(std::move(decoded), false);
        }
        file->seek(0); // some images are texts
    }
    if (name == "application/pdf"_L1) {
        return PreviewPdf{std::move(file), {}, 0};
    }
    QByteArray bytes = head;
    if (!head.isEmpty() && decodeText(head, true)) {
        file->seek(0);
        bytes = file->read(previewTextByteCount);
        const bool isCut = file->size() > bytes.size();
        if (auto text = decodeText(bytes, isCut)) {
            return textContent(std::move(*text), isCut);
        }
    }
    if (isMedia(name) && !isPlaylist(name, head)) {
        file->seek(0);
        return PreviewMedia{std::move(file), name.startsWith("video/"_L1)};
    }
    if (head.isEmpty() && type.inherits(u"text/plain"_s)) {
        return PreviewText{};
    }
    return PreviewCard{};
}

} // namespace

QString previewName(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return QString::fromStdString(
        printableText(slash == std::string_view::npos ? path : path.substr(slash + 1)));
}

LoadedPreview readPreview(const std::string &path, QSize bounds, std::stop_token stop)
{
    // As much as is looked at to tell types apart.
    constexpr qint64 headByteCount = qint64{16} << 10U;
    const QMimeDatabase types;
    LoadedPreview loaded;
    PreviewInfo &info = loaded.info;
    info.path = path;
    info.name = previewName(path);
    info.status = PreviewFileStatus::of(path);
    // The name alone: nothing has been read so far.
    describe(info, info.status.kind == Kind::regular
                       ? types.mimeTypeForFile(info.name, QMimeDatabase::MatchExtension)
                       : types.mimeTypeForName(typeNameOf(info.status.kind)));

    auto opened = PreviewFile::openPath(path, std::move(stop));
    if (!opened) {
        loaded.content = PreviewCard{messageOf(opened.error())};
        return loaded;
    }
    std::shared_ptr<PreviewFile> file = std::move(opened.value());
    try {
        const QByteArray head = file->read(headByteCount);
        if (head.isEmpty() && file->error() != QFile::NoError) {
            loaded.content = PreviewCard{messageOf(PreviewFile::Error::failed)};
            return loaded;
        }
        const QMimeType type = types.mimeTypeForFileNameAndData(info.name, head);
        describe(info, type);
        loaded.content = contentOf(std::move(file), type, head, bounds);
    } catch (const std::bad_alloc &) {
        loaded.content = PreviewCard{Texts::tr("There is too little memory for a preview.")};
    }
    return loaded;
}

} // namespace tessaly
