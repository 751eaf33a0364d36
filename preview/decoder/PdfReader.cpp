#include "preview/decoder/PdfReader.hpp"

#include <QImage>
#include <QPainter>
#include <QPdfDocument>

namespace tessaly {

PdfReader::PdfReader() = default;

PdfReader::~PdfReader() = default;

DecoderProblem PdfReader::open(QIODevice &device)
{
    m_document = std::make_unique<QPdfDocument>();
    // From a device the document is loaded at once, within this call.
    m_document->load(&device);
    if (m_document->status() == QPdfDocument::Status::Ready && pageCount() > 0) {
        return DecoderProblem::none;
    }
    const bool isLocked = m_document->error() == QPdfDocument::Error::IncorrectPassword;
    // After the error was asked for. A document that failed keeps what it has read.
    m_document.reset();
    return isLocked ? DecoderProblem::locked : DecoderProblem::unreadable;
}

int PdfReader::pageCount() const
{
    return m_document ? m_document->pageCount() : 0;
}

QSizeF PdfReader::pageSize(int page) const
{
    return m_document ? m_document->pagePointSize(page) : QSizeF();
}

bool PdfReader::drawPage(int page, QImage &paper) const
{
    if (!m_document || paper.isNull()) {
        return false;
    }
    // The library returns an image of its own, so the page is copied once.
    const QImage drawn = m_document->render(page, paper.size());
    if (drawn.isNull()) {
        return false;
    }
    paper.fill(Qt::white); // the page is drawn on nothing
    QPainter(&paper).drawImage(0, 0, drawn);
    return true;
}

} // namespace tessaly
