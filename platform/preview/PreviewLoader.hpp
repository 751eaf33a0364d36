#pragma once

#include "platform/preview/PreviewContent.hpp"
#include "platform/preview/PreviewThreads.hpp"

#include <QImage>
#include <QObject>
#include <QSize>

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>

namespace tessaly {

class PdfReader;
class ReplyBox;

/// Reads one preview at a time, away from the main thread; what was asked before is given up.
///
/// Threads: the main thread, on which the signals come too. Nothing here waits for a file.
class PreviewLoader : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreviewLoader)

public:
    explicit PreviewLoader(QObject *parent = nullptr);
    /// May wait for two seconds (see PreviewThreads).
    ~PreviewLoader() override;

    /// Reads the file at `path` (bytes); loaded() follows, unless something else is asked before.
    void load(const std::string &path, QSize bounds);
    /// Gives up what was asked, and closes the file.
    void cancel();

    /// Draws a page of the document that was loaded last; pageDrawn() follows.
    void drawPage(int page, QSize size);

Q_SIGNALS:
    void loaded(const tessaly::LoadedPreview &preview);
    /// A null image when the page cannot be drawn.
    void pageDrawn(int page, const QImage &image);

private:
    void openDocument(const LoadedPreview &asked);
    /// Runs `job` on a thread, and what it returns on the main thread, unless cancelled meanwhile.
    void post(PreviewThreads::Lane lane, std::function<std::function<void()>()> job);

    std::shared_ptr<ReplyBox> m_replies;
    std::shared_ptr<PdfReader> m_documents;
    std::stop_source m_stop;
    std::uint64_t m_number = 0; ///< of the file that was asked for last
    bool m_mayHaveDocument = false;
    PreviewThreads m_threads;
};

} // namespace tessaly
