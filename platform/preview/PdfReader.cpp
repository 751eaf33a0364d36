#include "platform/preview/PdfReader.hpp"

#include "platform/preview/PreviewFile.hpp"

#include <QPainter>
#include <QPdfDocument>

#include <algorithm>
#include <utility>

namespace tessaly {

namespace {

/// Pages that have a place in the preview.
constexpr int mostPages = 500;

} // namespace

PdfReader::PdfReader() = default;

PdfReader::~PdfReader()
{
    close();
}

PdfProblem PdfReader::open(std::uint64_t number, PreviewPdf &content)
{
    close();
    m_number = number;
    m_file = std::move(content.file);
    m_document = std::make_unique<QPdfDocument>();
    m_document->load(m_file.get());
    if (m_document->status() != QPdfDocument::Status::Ready) {
        const bool isLocked = m_document->error() == QPdfDocument::Error::IncorrectPassword;
        close();
        return isLocked ? PdfProblem::locked : PdfProblem::damaged;
    }
    content.pageCount = m_document->pageCount();
    const int shown = std::min(content.pageCount, mostPages);
    for (int page = 0; page < shown; ++page) {
        content.pageSizes.push_back(m_document->pagePointSize(page));
    }
    if (shown <= 0) {
        close();
        return PdfProblem::damaged;
    }
    return PdfProblem::none;
}

void PdfReader::close()
{
    m_document.reset();
    m_file.reset();
}

QImage PdfReader::pageImage(std::uint64_t number, int page, QSize size)
{
    if (!m_document || number != m_number || size.isEmpty()) {
        return {};
    }
    const QImage drawn = m_document->render(page, size);
    if (drawn.isNull()) {
        return {};
    }
    QImage paper(size, QImage::Format_RGB32);
    paper.fill(Qt::white);
    QPainter(&paper).drawImage(0, 0, drawn);
    return paper;
}

} // namespace tessaly
