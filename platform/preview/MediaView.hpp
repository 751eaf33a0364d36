#pragma once

#include "platform/preview/PreviewContent.hpp"

#include <QVideoFrame>
#include <QWidget>

#include <memory>

class QLabel;
class QSlider;

namespace tessaly {

class GlyphButton;
class PreviewPlayer;

/// Plays a sound or a video, and lets the user stop and move about in it.
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
    [[nodiscard]] qint64 duration() const noexcept { return m_duration; }

Q_SIGNALS:
    void failed(const QString &reason);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void paintScreen();
    void showTimes(qint64 position);
    void setPlayingShown(bool isPlaying);

    QWidget *m_screen;
    GlyphButton *m_playButton;
    QSlider *m_slider;
    QLabel *m_times;
    PreviewPlayer *m_player;
    PreviewInfo m_info;
    QImage m_picture;
    qint64 m_duration = 0;
    bool m_isPlaying = false;
};

} // namespace tessaly
