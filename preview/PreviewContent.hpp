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

/// What is known about any file; all that is shown of one that has no preview.
struct PreviewInfo {
    std::string path; ///< bytes
    QString name;     ///< fit to be shown
    QString type;     ///< in words
    QString iconName; ///< of the desktop's icon theme
    PreviewFileStatus status;
};

/// No preview. The message says why; none when files of this type have no preview.
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
    Cut cut = Cut::none; ///< the file goes on after so many bytes, or lines
};

/// The pages are drawn as they are asked for.
struct PreviewPdf {
    std::vector<QSizeF> pageSizes; ///< points; the document's first pages, up to a limit
    int pageCount = 0;
};

/// Is not decoded beforehand, but as it plays.
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
