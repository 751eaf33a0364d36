#pragma once

#include "preview/protocol/DecoderMessages.hpp"

#include <QSizeF>

#include <memory>

class QImage;
class QIODevice;
class QPdfDocument;

namespace tessaly {

/// A document, and images of its pages.
///
/// Threads: all documents of a process on one thread, since PDFium is not thread-safe.
class PdfReader {
public:
    PdfReader();
    ~PdfReader();
    Q_DISABLE_COPY_MOVE(PdfReader)

    /// Opens the document, which is read from as long as this exists.
    DecoderProblem open(QIODevice &device);

    /// 0 when none is open.
    [[nodiscard]] int pageCount() const;
    /// In points.
    [[nodiscard]] QSizeF pageSize(int page) const;
    /// Fills the paper with the page, on white. False when it cannot be drawn.
    bool drawPage(int page, QImage &paper) const;

private:
    std::unique_ptr<QPdfDocument> m_document;
};

} // namespace tessaly
