#pragma once

#include "platform/preview/PreviewContent.hpp"

#include <QImage>
#include <QSize>

#include <cstdint>
#include <memory>
#include <optional>

class QPdfDocument;

namespace tessaly {

class PreviewFile;

enum class PdfProblem : std::uint8_t { none, damaged, locked };

/// One document at a time, and images of its pages.
///
/// Threads: all calls on one thread, PreviewThreads' own for documents: the library behind this
///          lets only one thread in, and a page may take long. The last
///          reference to it may go anywhere.
class PdfReader {
public:
    PdfReader();
    ~PdfReader();
    PdfReader(const PdfReader &) = delete;
    PdfReader &operator=(const PdfReader &) = delete;
    PdfReader(PdfReader &&) = delete;
    PdfReader &operator=(PdfReader &&) = delete;

    /// Opens the content's file in place of the document before, and fills in the pages; `number`
    /// tells the document from others.
    PdfProblem open(std::uint64_t number, PreviewPdf &content);
    void close();

    /// The page on white, in this size (pixels); a null image when it cannot be drawn, or the
    /// document is no longer open.
    [[nodiscard]] QImage pageImage(std::uint64_t number, int page, QSize size);

private:
    std::uint64_t m_number = 0;
    std::shared_ptr<PreviewFile> m_file; ///< outlives the document, which reads from it
    std::unique_ptr<QPdfDocument> m_document;
};

} // namespace tessaly
