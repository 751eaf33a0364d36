#pragma once

#include "platform/background/BackgroundWork.hpp"

#include <QObject>
#include <QVideoFrame>

#include <cstdint>
#include <memory>

class QThread;

namespace tessaly {

class PreviewFile;

/// Plays one sound or video at a time. All that may block on a file runs on a thread of its own,
/// which the first open() starts. Without an audio device videos play silently, and sounds not at
/// all (see soundless()).
///
/// Which decoders there are depends on the environment variable QT_MEDIA_BACKEND: a program sets it
/// to "ffmpeg" before it makes its QApplication.
///
/// Threads: the main thread, on which the signals come too.
class PreviewPlayer : public QObject {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PreviewPlayer)

public:
    explicit PreviewPlayer(QObject *parent = nullptr);
    /// May wait for two seconds; a thread that has not ended by then is leaked.
    ~PreviewPlayer() override;

    /// Plays a file in place of the one before.
    void open(std::shared_ptr<PreviewFile> file);
    void close();
    void setPlaying(bool isPlaying);
    /// Milliseconds from the start.
    void seek(qint64 position);

Q_SIGNALS:
    void durationChanged(qint64 milliseconds);
    void positionChanged(qint64 milliseconds);
    void playingChanged(bool isPlaying);
    /// The frame that is due. Frames that the main thread was too slow for are dropped.
    void frameArrived(const QVideoFrame &frame);
    /// The file is a sound, and there is no audio device. It stays open, so that its duration can
    /// be shown.
    void soundless();
    /// The file cannot be played, for this reason.
    void failed(const QString &reason);

private:
    class Core;
    struct Frames;

    void start();
    template <typename Job>
    void post(Job job);

    std::shared_ptr<Frames> m_frames;
    QThread *m_thread = nullptr;
    Core *m_core = nullptr; ///< lives on the thread
    std::uint64_t m_number = 0;
    BackgroundWork m_work; ///< destroyed first: no reply of the thread is called after that
};

} // namespace tessaly
