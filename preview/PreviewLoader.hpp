#pragma once

#include "platform/background/BackgroundWork.hpp"
#include "preview/FilePreview.hpp"
#include "preview/PreviewContent.hpp"
#include "preview/PreviewThreads.hpp"

#include <QImage>
#include <QObject>
#include <QSize>

#include <functional>
#include <memory>
#include <stop_token>
#include <string>

namespace tessaly {

class DecoderProcess;
class DecoderSession;

/// Reads one preview at a time, off the main thread; the one before is cancelled.
///
/// Threads: the main thread, on which the signals come too. Nothing here waits for a file.
class PreviewLoader : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreviewLoader)

public:
    explicit PreviewLoader(QObject *parent = nullptr);
    /// With decoders of another program, for tests.
    PreviewLoader(std::shared_ptr<DecoderProcess> decoders, QObject *parent);
    /// May wait for two seconds (see PreviewThreads).
    ~PreviewLoader() override;

    /// Reads the file at `path` (bytes); loaded() follows, unless something else is asked before.
    void load(const std::string &path, QSize bounds);
    /// Drops the request, closes the file, and has its decoder killed.
    void cancel();

    /// Draws a page of the document that was loaded last; pageDrawn() follows.
    void drawPage(int page, QSize size);
    /// Decodes the next frame of the image that was loaded last, which moves; frameDecoded()
    /// follows, unless there is none.
    void nextFrame();

Q_SIGNALS:
    /// Is sent once more, with a card, when the decoder of a document fails before it has drawn a
    /// page.
    void loaded(const tessaly::LoadedPreview &preview);
    /// A null image when the page cannot be drawn.
    void pageDrawn(int page, const QImage &image);
    void frameDecoded(const QImage &image, int delayMs);

private:
    void show(const ReadPreview &read);
    void showPage(int page, const QImage &image, bool hasFailed);
    /// Runs `job` on a thread, and what it returns on the main thread, unless cancelled meanwhile.
    void post(PreviewThreads::Lane lane, std::function<std::function<void()>()> job);

    std::shared_ptr<DecoderProcess> m_decoders;
    std::stop_source m_stop;
    PreviewInfo m_info;                        ///< of the file that was loaded last
    std::shared_ptr<DecoderSession> m_session; ///< what is still to be decoded of it
    QSize m_frameSize;
    bool m_hasDrawnPage = false;
    PreviewThreads m_threads;
    BackgroundWork m_work; ///< destroyed first: no answer of a thread is called after that
};

} // namespace tessaly
