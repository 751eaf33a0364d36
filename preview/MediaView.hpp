#pragma once

#include "preview/PreviewContent.hpp"

#include <QVideoFrame>
#include <QWidget>

#include <memory>

class QLabel;
class QPainter;
class QSlider;

namespace tessaly {

class GlyphButton;
class PaintedView;
class PreviewPlayer;

/// Plays a sound or a video, with a button to pause and, where the length is known, a slider to
/// seek. Without an audio device it shows a hint and does not play sounds.
class MediaView final : public QWidget {
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MediaView)

public:
    explicit MediaView(QWidget *parent = nullptr);
    ~MediaView() override;

    void show(const PreviewInfo &info, const PreviewMedia &media);
    void clear();
    void togglePlaying();

    [[nodiscard]] bool isPlaying() const noexcept { return m_isPlaying; }
    [[nodiscard]] bool hasPicture() const noexcept { return !m_picture.isNull(); }
    /// Milliseconds; 0 when it is not known.
    [[nodiscard]] qint64 duration() const noexcept { return m_duration; }
    /// Why nothing plays; empty when something does, or could.
    [[nodiscard]] const QString &hint() const noexcept { return m_hint; }

Q_SIGNALS:
    void failed(const QString &reason);

private:
    void setDuration(qint64 duration);
    void showHint(const QString &hint);
    void paintScreen(QPainter &painter) const;
    void showTimes(qint64 position);
    void setPlayingShown(bool isPlaying);

    PaintedView *m_screen;
    GlyphButton *m_playButton;
    QSlider *m_slider;
    QLabel *m_times;
    PreviewPlayer *m_player;
    PreviewInfo m_info;
    QImage m_picture;
    QString m_hint;
    qint64 m_duration = 0;
    bool m_isPlaying = false;
};

} // namespace tessaly
