#include "preview/PreviewLoader.hpp"

#include "preview/DecoderProcess.hpp"
#include "preview/DecoderSession.hpp"

#include <utility>
#include <variant>

namespace tessaly {

PreviewLoader::PreviewLoader(QObject *parent)
    : PreviewLoader(std::make_shared<DecoderProcess>(), parent)
{
}

PreviewLoader::PreviewLoader(std::shared_ptr<DecoderProcess> decoders, QObject *parent)
    : QObject(parent), m_decoders(std::move(decoders))
{
    // So that it is ready by the time the window is.
    m_threads.post(PreviewThreads::Lane::pages, {}, [started = m_decoders] { started->start(); });
}

PreviewLoader::~PreviewLoader()
{
    m_stop.request_stop();
}

void PreviewLoader::post(PreviewThreads::Lane lane, std::function<std::function<void()>()> job)
{
    // Answers may use `this`: they run on the main thread, and not once m_work is destroyed.
    // `stop` is checked again on the main thread: the answer may wait there in the queue while the
    // next file is asked for.
    m_threads.post(lane, m_stop, [post = m_work.poster(), stop = m_stop, job = std::move(job)] {
        std::function<void()> answer = job();
        post([stop, answer = std::move(answer)] {
            if (!stop.stop_requested()) {
                answer();
            }
        });
    });
}

void PreviewLoader::load(const std::string &path, QSize bounds)
{
    cancel();
    // What the job needs is copied: it may still hang in a read when this object is destroyed.
    post(PreviewThreads::Lane::files, [this, path, bounds, decoders = m_decoders,
                                       stop = m_stop.get_token()] {
        auto read = std::make_shared<const ReadPreview>(readPreview(path, bounds, decoders, stop));
        return [this, read] { show(*read); };
    });
}

void PreviewLoader::cancel()
{
    m_stop.request_stop();
    m_stop = std::stop_source(); // jobs that have begun keep the one that was stopped
    // Closes the socket, unless a job still holds the session: then the stop request ends its wait.
    m_session.reset();
}

void PreviewLoader::show(const ReadPreview &read)
{
    m_info = read.preview.info;
    m_session = read.session;
    m_hasDrawnPage = false;
    if (const auto *image = std::get_if<PreviewImage>(&read.preview.content)) {
        m_frameSize = image->fullSize; // frames are decoded at full size, and small (see isMoving)
    }
    Q_EMIT loaded(read.preview);
}

void PreviewLoader::drawPage(int page, QSize size)
{
    if (!m_session) {
        return;
    }
    post(PreviewThreads::Lane::pages, [this, page, size, session = m_session] {
        const QImage image = session->page(page, size);
        return [this, page, image, hasFailed = session->hasFailed()] {
            showPage(page, image, hasFailed);
        };
    });
}

void PreviewLoader::showPage(int page, const QImage &image, bool hasFailed)
{
    if (!m_session) {
        return; // it failed for another page meanwhile
    }
    // A document of which no page can be drawn is replaced by a card. A later page that fails stays
    // blank.
    if (hasFailed && !m_hasDrawnPage) {
        m_session.reset();
        Q_EMIT loaded({m_info, PreviewCard{undecodedMessage()}});
        return;
    }
    m_hasDrawnPage = m_hasDrawnPage || !image.isNull();
    Q_EMIT pageDrawn(page, image);
}

void PreviewLoader::nextFrame()
{
    if (!m_session) {
        return;
    }
    post(PreviewThreads::Lane::pages, [this, size = m_frameSize, session = m_session] {
        const DecoderSession::Frame frame = session->nextFrame(size);
        return [this, frame] {
            if (!frame.image.isNull()) {
                Q_EMIT frameDecoded(frame.image, frame.delayMs);
            }
        };
    });
}

} // namespace tessaly
