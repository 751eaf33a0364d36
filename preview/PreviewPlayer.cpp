#include "preview/PreviewPlayer.hpp"

#include "preview/MatroskaDuration.hpp"
#include "preview/PreviewFile.hpp"

#include <QAudioDevice>
#include <QAudioOutput>
#include <QMediaDevices>
#include <QMediaPlayer>
#include <QThread>
#include <QVideoSink>

#include <mutex>
#include <utility>

namespace tessaly {

/// The latest frame, on its way to the main thread.
struct PreviewPlayer::Frames {
    std::mutex mutex;
    QVideoFrame latest;    ///< guarded by mutex
    bool isPosted = false; ///< guarded by mutex; the main thread will take `latest`
};

/// Lives on the player's thread.
class PreviewPlayer::Core : public QObject {
public:
    Core(PreviewPlayer &owner, BackgroundWork::Poster post, std::shared_ptr<Frames> frames)
        : m_owner(owner), m_post(std::move(post)), m_frames(std::move(frames))
    {
    }

    void open(const std::shared_ptr<PreviewFile> &file, std::uint64_t number)
    {
        close();
        // The next file has been asked for while this one waited for the thread.
        if (file->isStopped()) {
            return;
        }
        m_number = number;
        m_file = file;
        m_sink = std::make_unique<QVideoSink>();
        m_player = std::make_unique<QMediaPlayer>();
        m_player->setVideoSink(m_sink.get());
        // Qt 6.4 crashes in an output without a device.
        if (!QMediaDevices::audioOutputs().isEmpty()) {
            m_output = std::make_unique<QAudioOutput>();
            m_player->setAudioOutput(m_output.get());
        }
        m_hasBegun = false;
        // Not every backend reads the length from a Matroska header, so it is read here.
        m_headerDuration = matroskaDuration(m_file->read(matroskaHeadByteCount)).value_or(0);
        m_file->seek(0);
        // Before the source is set, which may already emit.
        connectSignals();
        m_player->setSourceDevice(m_file.get());
        begin();
    }

    void close()
    {
        // The player first: it uses the outputs, and reads the file, until it is destroyed.
        m_player.reset();
        m_output.reset();
        m_sink.reset();
        m_file.reset();
    }

    void setPlaying(bool isPlaying)
    {
        if (!m_player) {
            return;
        }
        isPlaying ? m_player->play() : m_player->pause();
    }

    void seek(qint64 position)
    {
        if (m_player) {
            m_player->setPosition(position);
        }
    }

private:
    /// Plays the file, or sends soundless(), as soon as it is known whether it has a video.
    void begin()
    {
        const QMediaPlayer::MediaStatus status = m_player->mediaStatus();
        if (m_hasBegun ||
            (status != QMediaPlayer::LoadedMedia && status != QMediaPlayer::BufferedMedia)) {
            return;
        }
        // Once for each file: the status may return to "buffered" later, and a paused video would
        // play on.
        m_hasBegun = true;
        replyDuration();
        if (m_output == nullptr && !m_player->hasVideo()) {
            reply([](PreviewPlayer &owner) { Q_EMIT owner.soundless(); });
        } else {
            m_player->play();
        }
    }

    void replyDuration()
    {
        // A backend reports 0 while it does not know the length.
        const qint64 duration = m_player->duration() > 0 ? m_player->duration() : m_headerDuration;
        reply([duration](PreviewPlayer &owner) { Q_EMIT owner.durationChanged(duration); });
    }

    void connectSignals()
    {
        connect(m_player.get(), &QMediaPlayer::mediaStatusChanged, this, [this] { begin(); });
        connect(m_player.get(), &QMediaPlayer::durationChanged, this, [this] { replyDuration(); });
        connect(m_player.get(), &QMediaPlayer::positionChanged, this, [this](qint64 position) {
            reply([position](PreviewPlayer &owner) { Q_EMIT owner.positionChanged(position); });
        });
        connect(m_player.get(), &QMediaPlayer::playbackStateChanged, this,
                [this](QMediaPlayer::PlaybackState state) {
                    const bool isPlaying = state == QMediaPlayer::PlayingState;
                    reply([isPlaying](PreviewPlayer &owner) {
                        Q_EMIT owner.playingChanged(isPlaying);
                    });
                });
        connect(m_player.get(), &QMediaPlayer::errorOccurred, this,
                [this](QMediaPlayer::Error, const QString &reason) {
                    reply([reason](PreviewPlayer &owner) { Q_EMIT owner.failed(reason); });
                });
        connect(m_sink.get(), &QVideoSink::videoFrameChanged, this,
                [this](const QVideoFrame &frame) { send(frame); });
    }

    template <typename Reply>
    void reply(Reply reply)
    {
        // The number tells a reply of the file before from one of this file: close() and open() do
        // not wait for the thread.
        m_post([&owner = m_owner, number = m_number, reply = std::move(reply)] {
            if (number == owner.m_number) {
                reply(owner);
            }
        });
    }

    void send(const QVideoFrame &frame)
    {
        const std::scoped_lock lock(m_frames->mutex);
        m_frames->latest = frame;
        // One event at a time, which takes the latest frame. An event for each would pile up while
        // the main thread is busy.
        if (std::exchange(m_frames->isPosted, true)) {
            return;
        }
        m_post([&owner = m_owner, frames = m_frames, number = m_number] {
            QVideoFrame latest;
            {
                // Taken under the lock, emitted outside of it: a slot converts the frame, which
                // takes long.
                const std::scoped_lock taking(frames->mutex);
                frames->isPosted = false;
                latest = std::exchange(frames->latest, {});
            }
            if (number == owner.m_number && latest.isValid()) {
                Q_EMIT owner.frameArrived(latest);
            }
        });
    }

    PreviewPlayer &m_owner;        ///< for the main thread alone, where it is there
    BackgroundWork::Poster m_post; ///< to the main thread
    std::shared_ptr<Frames> m_frames;
    std::uint64_t m_number = 0;
    bool m_hasBegun = false;
    qint64 m_headerDuration = 0; ///< milliseconds; 0: the header has none
    std::shared_ptr<PreviewFile> m_file;
    std::unique_ptr<QVideoSink> m_sink;
    std::unique_ptr<QAudioOutput> m_output;
    std::unique_ptr<QMediaPlayer> m_player;
};

PreviewPlayer::PreviewPlayer(QObject *parent)
    : QObject(parent), m_frames(std::make_shared<Frames>())
{
}

PreviewPlayer::~PreviewPlayer()
{
    if (m_thread == nullptr) {
        return;
    }
    // A read from a network file system may hang for good. Then the thread is leaked, since the
    // program must be able to quit.
    constexpr unsigned long timeoutMs = 2000;
    // Runs on the player's thread, when its event loop ends at the latest: QMediaPlayer must be
    // destroyed where it lives.
    m_core->deleteLater();
    m_thread->quit();
    if (m_thread->wait(timeoutMs)) {
        delete m_thread;
    }
}

void PreviewPlayer::start()
{
    // Without a parent, which would destroy a thread that still runs.
    m_thread = new QThread;
    m_core = new Core(*this, m_work.poster(), m_frames);
    m_core->moveToThread(m_thread);
    m_thread->start();
}

template <typename Job>
void PreviewPlayer::post(Job job)
{
    // Without a thread nothing was opened, and there is nothing to close.
    if (m_core != nullptr) {
        QMetaObject::invokeMethod(
            m_core, [core = m_core, job = std::move(job)] { job(*core); }, Qt::QueuedConnection);
    }
}

void PreviewPlayer::open(std::shared_ptr<PreviewFile> file)
{
    if (m_thread == nullptr) {
        start();
    }
    ++m_number;
    post([file = std::move(file), number = m_number](Core &core) { core.open(file, number); });
}

void PreviewPlayer::close()
{
    ++m_number;
    post([](Core &core) { core.close(); });
}

void PreviewPlayer::setPlaying(bool isPlaying)
{
    post([isPlaying](Core &core) { core.setPlaying(isPlaying); });
}

void PreviewPlayer::seek(qint64 position)
{
    post([position](Core &core) { core.seek(position); });
}

} // namespace tessaly
