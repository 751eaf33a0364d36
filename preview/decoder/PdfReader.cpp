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
    m_document->load(&device);
    if (m_document->status() == QPdfDocument::Status::Ready && pageCount() > 0) {
        return DecoderProblem::none;
    }
    const bool isLocked = m_document->error() == QPdfDocument::Error::IncorrectPassword;
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
    const QImage drawn = m_document->render(page, paper.size());
    if (drawn.isNull()) {
        return false;
    }
    paper.fill(Qt::white); // the page is drawn on nothing
    QPainter(&paper).drawImage(0, 0, drawn);
    return true;
}

} // namespace tessaly
