#include "platform/preview/PreviewLoader.hpp"

#include "platform/preview/FilePreview.hpp"
#include "platform/preview/PdfReader.hpp"
#include "platform/preview/ReplyBox.hpp"

#include <utility>
#include <variant>

namespace tessaly {

PreviewLoader::PreviewLoader(QObject *parent)
    : QObject(parent), m_replies(std::make_shared<ReplyBox>(this)),
      m_documents(std::make_shared<PdfReader>())
{
}

PreviewLoader::~PreviewLoader()
{
    m_stop.request_stop();
    m_replies->close();
}

void PreviewLoader::post(PreviewThreads::Lane lane, std::function<std::function<void()>()> job)
{
    m_threads.post(lane, m_stop, [replies = m_replies, stop = m_stop, job = std::move(job)] {
        std::function<void()> answer = job();
        replies->post([stop, answer = std::move(answer)] {
            if (!stop.stop_requested()) {
                answer();
            }
        });
    });
}

void PreviewLoader::load(const std::string &path, QSize bounds)
{
    cancel();
    post(PreviewThreads::Lane::files, [this, path, bounds, stop = m_stop.get_token()] {
        auto preview = std::make_shared<const LoadedPreview>(readPreview(path, bounds, stop));
        return [this, preview] {
            if (std::holds_alternative<PreviewPdf>(preview->content)) {
                openDocument(*preview);
            } else {
                Q_EMIT loaded(*preview);
            }
        };
    });
}

void PreviewLoader::cancel()
{
    m_stop.request_stop();
    m_stop = std::stop_source();
    ++m_number;
    if (!std::exchange(m_mayHaveDocument, false)) {
        return;
    }
    // The documents' thread alone may close it.
    m_threads.post(PreviewThreads::Lane::documents, std::stop_source(),
                   [documents = m_documents] { documents->close(); });
}

void PreviewLoader::openDocument(const LoadedPreview &asked)
{
    m_mayHaveDocument = true;
    post(PreviewThreads::Lane::documents, [this, asked, documents = m_documents,
                                           number = m_number] {
        LoadedPreview preview = asked;
        const PdfProblem problem = documents->open(number, std::get<PreviewPdf>(preview.content));
        if (problem == PdfProblem::locked) {
            preview.content = PreviewCard{tr("This document is protected by a password.")};
        } else if (problem == PdfProblem::damaged) {
            preview.content = PreviewCard{tr("This document cannot be read. It may be damaged.")};
        }
        return [this, preview = std::move(preview)] { Q_EMIT loaded(preview); };
    });
}

void PreviewLoader::drawPage(int page, QSize size)
{
    post(PreviewThreads::Lane::documents,
         [this, page, size, documents = m_documents, number = m_number] {
             const QImage image = documents->pageImage(number, page, size);
             return [this, page, image] { Q_EMIT pageDrawn(page, image); };
         });
}

} // namespace tessaly
