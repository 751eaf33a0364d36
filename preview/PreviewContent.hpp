#pragma once

#include "preview/PreviewFile.hpp"

#include <QImage>
#include <QSize>
#include <QSizeF>
#include <QString>

#include <cstdint>
#include <memory>
#include <string>
#include <variant>
#include <vector>

namespace tessaly {

/// What is known about any file, and all that is shown of one without a preview.
struct PreviewInfo {
    std::string path; ///< bytes
    QString name;     ///< printable
    QString type;     ///< in words
    QString iconName; ///< of the desktop's icon theme
    PreviewFileStatus status;
};

/// No preview. The message says why; it is empty for types that never have one.
struct PreviewCard {
    QString message;
};

struct PreviewImage {
    QImage image;
    QSize fullSize; ///< before it was scaled down, in pixels; for drawings that scale without loss
                    ///< their nominal size
    bool mayGrow = false;  ///< such a drawing
    bool isMoving = false; ///< this is its first frame
};

struct PreviewText {
    enum class Cut : std::uint8_t { none, bytes, lines };

    QString text;
    Cut cut = Cut::none; ///< by which limit the text is shorter than the file
};

/// The pages are drawn on demand.
struct PreviewPdf {
    std::vector<QSizeF> pageSizes; ///< points; the document's first pages, up to a limit
    int pageCount = 0;
};

/// Is decoded while it plays.
struct PreviewMedia {
    std::shared_ptr<PreviewFile> file;
    bool isVideo = false;
};

using PreviewContent =
    std::variant<PreviewCard, PreviewImage, PreviewText, PreviewPdf, PreviewMedia>;

struct LoadedPreview {
    PreviewInfo info;
    PreviewContent content;
};

} // namespace tessaly
