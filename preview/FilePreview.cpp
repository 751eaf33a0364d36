#include "preview/FilePreview.hpp"

#include "engine/tree/PrintableText.hpp"
#include "preview/DecoderSession.hpp"
#include "preview/TextDecoder.hpp"

#include <QCoreApplication>
#include <QMimeDatabase>

#include <algorithm>
#include <array>
#include <new>
#include <optional>
#include <utility>
#include <variant>

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

/// Formats that name other files or addresses, which a player would open.
bool isPlaylist(const QString &type, const QByteArray &head)
{
    constexpr std::array<const char *, 4> names{"mpegurl", "playlist", "scpls", "asx"};
    // By the content as well: the player looks at that, whatever the file is called.
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

/// Whether a file of an image type is an SVG drawing, compressed or not. By its content as well,
/// since it may have any name. No other image format begins like these.
bool isDrawing(const QString &type, QByteArray head)
{
    if (type.startsWith("image/svg+xml"_L1) || head.startsWith("\x1F\x8B")) {
        return true;
    }
    if (head.startsWith("\xEF\xBB\xBF")) {
        head.remove(0, 3);
    }
    return head.trimmed().startsWith('<');
}

PreviewContent imageContent(const std::optional<DecoderSession::Image> &decoded, bool isDrawing)
{
    if (!decoded) {
        return PreviewCard{undecodedMessage()};
    }
    if (decoded->problem == DecoderProblem::none) {
        return decoded->image;
    }
    if (isDrawing) {
        return PreviewCard{Texts::tr("This drawing is damaged, or too large to preview.")};
    }
    return PreviewCard{decoded->problem == DecoderProblem::tooLarge
                           ? Texts::tr("This image is too large to preview.")
                           : Texts::tr("This image cannot be read. It may be damaged.")};
}

PreviewContent documentContent(const std::optional<DecoderSession::Document> &opened)
{
    if (!opened) {
        return PreviewCard{undecodedMessage()};
    }
    switch (opened->problem) {
    case DecoderProblem::none:
        return opened->document;
    case DecoderProblem::locked:
        return PreviewCard{Texts::tr("This document is protected by a password.")};
    default:
        return PreviewCard{Texts::tr("This document cannot be read. It may be damaged.")};
    }
}

PreviewText textContent(QString text, bool isCut)
{
    qsizetype end = -1;
    // Lines are limited besides bytes: a text of empty lines would make hundred thousands of
    // blocks.
    for (qsizetype line = 0; line < previewTextLineCount; ++line) {
        end = text.indexOf(u'\n', end + 1);
        if (end < 0) {
            return {std::move(text), isCut ? PreviewText::Cut::bytes : PreviewText::Cut::none};
        }
    }
    // The line end after the last line that fits is not a further line.
    if (end + 1 == text.size() && !isCut) {
        return {std::move(text), PreviewText::Cut::none};
    }
    text.truncate(end);
    return {std::move(text), PreviewText::Cut::lines};
}

/// The preview of one file that is open.
class Reading {
public:
    Reading(std::shared_ptr<PreviewFile> file, const std::shared_ptr<DecoderProcess> &decoders,
            const std::stop_token &stop)
        : m_file(std::move(file)),
          m_session(std::make_shared<DecoderSession>(decoders, m_file, stop))
    {
    }

    [[nodiscard]] PreviewContent content(const QMimeType &type, const QByteArray &head,
                                         QSize bounds) const
    {
        const QString name = type.name();
        // The order matters: an image that cannot be decoded may be a text, and a text may have the
        // type of a playlist.
        if (name.startsWith("image/"_L1)) {
            const bool isDrawn = isDrawing(name, head);
            const auto decoded = m_session->image(bounds, isDrawn);
            const bool mayBeText = decoded && decoded->problem == DecoderProblem::unreadable &&
                                   !isDrawn && type.inherits(u"text/plain"_s);
            if (!mayBeText) { // XPM images, for one, are texts
                return imageContent(decoded, isDrawn);
            }
        }
        if (name == "application/pdf"_L1) {
            return documentContent(m_session->document());
        }
        // Any type, since the database does not know every source or log file as a text.
        if (auto text = this->text(head)) {
            return std::move(*text);
        }
        if (isMedia(name) && !isPlaylist(name, head)) {
            // The head has been read from this file, and a player starts where it stands.
            m_file->seek(0);
            return PreviewMedia{m_file, name.startsWith("video/"_L1)};
        }
        if (head.isEmpty() && type.inherits(u"text/plain"_s)) { // no bytes have no text encoding
            return PreviewText{};
        }
        return PreviewCard{};
    }

    /// The session that this content needs for as long as it is shown; nullptr when it is complete.
    [[nodiscard]] std::shared_ptr<DecoderSession> session(const PreviewContent &content) const
    {
        const auto *image = std::get_if<PreviewImage>(&content);
        const bool isNeeded =
            std::holds_alternative<PreviewPdf>(content) || (image != nullptr && image->isMoving);
        return isNeeded ? m_session : nullptr;
    }

private:
    [[nodiscard]] std::optional<PreviewText> text(const QByteArray &head) const
    {
        // The head decides, so that large binary files are not read any further.
        if (head.isEmpty() || !decodeText(head, true)) {
            return std::nullopt;
        }
        m_file->seek(0);
        const QByteArray bytes = m_file->read(previewTextByteCount);
        // A character may be cut in its middle then, which is not an error.
        const bool isCut = m_file->size() > bytes.size();
        auto text = decodeText(bytes, isCut);
        return text ? std::optional(textContent(std::move(*text), isCut)) : std::nullopt;
    }

    std::shared_ptr<PreviewFile> m_file;
    std::shared_ptr<DecoderSession> m_session;
};

} // namespace

QString previewName(std::string_view path)
{
    const std::size_t slash = path.rfind('/');
    return QString::fromStdString(
        tree::printableText(slash == std::string_view::npos ? path : path.substr(slash + 1)));
}

QString undecodedMessage()
{
    return Texts::tr("This file cannot be shown.");
}

ReadPreview readPreview(const std::string &path, QSize bounds,
                        const std::shared_ptr<DecoderProcess> &decoders,
                        const std::stop_token &stop)
{
    // As much as QMimeDatabase looks at.
    constexpr qint64 headByteCount = qint64{16} << 10U;
    const QMimeDatabase types;
    ReadPreview read;
    LoadedPreview &loaded = read.preview;
    PreviewInfo &info = loaded.info;
    info.path = path;
    info.name = previewName(path);
    // Before the file is opened: the card of a file that cannot be read shows its size and date,
    // too.
    info.status = PreviewFileStatus::of(path);
    // By the name alone: nothing has been read yet.
    describe(info, info.status.kind == Kind::regular
                       ? types.mimeTypeForFile(info.name, QMimeDatabase::MatchExtension)
                       : types.mimeTypeForName(typeNameOf(info.status.kind)));

    auto opened = PreviewFile::openPath(path, stop);
    if (!opened) {
        loaded.content = PreviewCard{messageOf(opened.error())};
        return read;
    }
    std::shared_ptr<PreviewFile> file = std::move(opened.value());
    try {
        const QByteArray head = file->read(headByteCount);
        // An empty file is fine, and reads as empty, too.
        if (head.isEmpty() && file->error() != QFile::NoError) {
            loaded.content = PreviewCard{messageOf(PreviewFile::Error::failed)};
            return read;
        }
        const QMimeType type = types.mimeTypeForFileNameAndData(info.name, head);
        describe(info, type);
        const Reading reading(std::move(file), decoders, stop);
        loaded.content = reading.content(type, head, bounds);
        read.session = reading.session(loaded.content);
    } catch (const std::bad_alloc &) { // would end the thread, and with it the program
        loaded.content = PreviewCard{Texts::tr("There is too little memory for a preview.")};
    }
    return read;
}

} // namespace tessaly
