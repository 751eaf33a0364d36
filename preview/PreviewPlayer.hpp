#pragma once

#include <QObject>
#include <QVideoFrame>

#include <cstdint>
#include <memory>

class QThread;

namespace tessaly {

class PreviewFile;
class ReplyBox;

/// Plays one sound or video at a time. Everything that may wait for a file happens on a thread of
/// its own, which the first open() starts. Where there is no device for sounds, videos play
/// silently, and sounds not at all: soundless() tells.
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
    /// May wait for two seconds; a player that does not end by then is left alone.
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
    /// The picture that is due. Those that the main thread was too slow for are left out.
    void frameArrived(const QVideoFrame &frame);
    /// The file holds nothing but a sound, and there is no device to play it on. It stays open, for
    /// the sake of its duration.
    void soundless();
    /// The file cannot be played, for this reason.
    void failed(const QString &reason);

private:
    class Core;
    struct Frames;

    void start();
    template <typename Job>
    void post(Job job);

    std::shared_ptr<ReplyBox> m_replies;
    std::shared_ptr<Frames> m_frames;
    QThread *m_thread = nullptr;
    Core *m_core = nullptr; ///< lives on the thread
    std::uint64_t m_number = 0;
};

} // namespace tessaly
