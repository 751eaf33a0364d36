#include "preview/MediaView.hpp"

#include "app/controls/theme/Theme.hpp"
#include "preview/FileTypeIcon.hpp"
#include "preview/GlyphButton.hpp"
#include "preview/PaintedView.hpp"
#include "preview/PreviewPlayer.hpp"
#include "preview/PreviewTheme.hpp"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

/// "1:02:03", or "2:03".
QString timeText(qint64 milliseconds)
{
    constexpr qint64 secondsPerMinute = 60;
    const qint64 seconds = std::max<qint64>(milliseconds, 0) / 1000;
    const qint64 minutes = seconds / secondsPerMinute;
    const qint64 hours = minutes / secondsPerMinute;
    const auto twoDigits = [](qint64 number) {
        return u"%1"_s.arg(number, 2, 10, QLatin1Char('0'));
    };
    const QString end = u':' + twoDigits(seconds % secondsPerMinute);
    return hours > 0 ? QString::number(hours) + u':' + twoDigits(minutes % secondsPerMinute) + end
                     : QString::number(minutes) + end;
}

} // namespace

MediaView::MediaView(QWidget *parent)
    : QWidget(parent),
      m_screen(new PaintedView([this](QPainter &painter) { paintScreen(painter); })),
      m_playButton(new GlyphButton(GlyphButton::Glyph::play, tr("Play"))),
      m_slider(new QSlider(Qt::Horizontal)), m_times(new QLabel), m_player(new PreviewPlayer(this))
{
    auto *bar = new QHBoxLayout;
    bar->setContentsMargins(12, 6, 14, 6);
    bar->setSpacing(10);
    bar->addWidget(m_playButton);
    bar->addWidget(m_slider, 1);
    bar->addWidget(m_times);
    QSizePolicy policy = m_slider->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // so the button and the times stay in place
    m_slider->setSizePolicy(policy);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_screen, 1);
    layout->addLayout(bar);

    setTextColor(*m_times, theme::preview::dimText);
    // Not by a click: with the focus it would take the arrow keys from paging.
    m_slider->setFocusPolicy(Qt::TabFocus);
    m_slider->setAccessibleName(tr("Position"));
    connect(m_playButton, &GlyphButton::clicked, this, &MediaView::togglePlaying);
    connect(m_slider, &QSlider::valueChanged, this, [this](int value) {
        // While the knob is dragged, too. setValue() for the player's position blocks the signal.
        m_player->seek(value);
        showTimes(value);
    });
    connect(m_player, &PreviewPlayer::durationChanged, this, &MediaView::setDuration);
    connect(m_player, &PreviewPlayer::positionChanged, this, [this](qint64 position) {
        // While the user drags the knob, the player's position would pull it away.
        if (!m_slider->isSliderDown()) {
            const QSignalBlocker blocked(m_slider);
            m_slider->setValue(static_cast<int>(
                std::clamp<qint64>(position, m_slider->minimum(), m_slider->maximum())));
            showTimes(position);
        }
    });
    connect(m_player, &PreviewPlayer::playingChanged, this, &MediaView::setPlayingShown);
    connect(m_player, &PreviewPlayer::frameArrived, this, [this](const QVideoFrame &frame) {
        m_picture = frame.toImage();
        m_screen->update();
    });
    connect(m_player, &PreviewPlayer::soundless, this,
            [this] { showHint(tr("There is no device to play sounds on.")); });
    connect(m_player, &PreviewPlayer::failed, this, &MediaView::failed);
    setAccessibleName(tr("Player"));
}

MediaView::~MediaView() = default;

void MediaView::show(const PreviewInfo &info, const PreviewMedia &media)
{
    clear();
    m_info = info;
    // Playing begins by itself. What cannot be played is told by failed(), later.
    m_player->open(media.file);
}

void MediaView::clear()
{
    // Only asked for: the player's thread closes the file, and answers of the old file are dropped.
    m_player->close();
    m_info = {};
    m_picture = {};
    showHint({});
    setDuration(0);
    setPlayingShown(false);
    m_screen->update();
}

void MediaView::setDuration(qint64 duration)
{
    m_duration = std::max<qint64>(duration, 0);
    const QSignalBlocker blocked(m_slider);
    constexpr qint64 maxPosition = 1'000'000'000; // a slider counts with int
    m_slider->setRange(0, static_cast<int>(std::min(m_duration, maxPosition)));
    // Shares of the length: fixed steps would be too long for a sound and too short for a film.
    m_slider->setPageStep(std::max(m_slider->maximum() / 10, 1));
    m_slider->setSingleStep(std::max(m_slider->maximum() / 50, 1));
    m_slider->setVisible(m_duration > 0 && m_hint.isEmpty());
    showTimes(m_slider->value());
}

void MediaView::showHint(const QString &hint)
{
    m_hint = hint;
    m_screen->setAccessibleName(hint);
    m_playButton->setEnabled(hint.isEmpty());
    // The slider is hidden while there is a hint.
    setDuration(m_duration);
    m_screen->update();
}

void MediaView::togglePlaying()
{
    m_player->setPlaying(!m_isPlaying);
}

void MediaView::setPlayingShown(bool isPlaying)
{
    m_isPlaying = isPlaying;
    m_playButton->setGlyph(isPlaying ? GlyphButton::Glyph::pause : GlyphButton::Glyph::play,
                           isPlaying ? tr("Pause") : tr("Play"));
}

void MediaView::showTimes(qint64 position)
{
    // Nothing plays then, so there is only the length to show.
    if (!m_hint.isEmpty()) {
        m_times->setText(m_duration > 0 ? timeText(m_duration) : QString());
    } else if (m_duration == 0) {
        m_times->setText(timeText(position)); // the length is unknown
    } else {
        //: How much of a sound or video has been played, and its length: "0:03 / 1:20"
        m_times->setText(tr("%1 / %2").arg(timeText(position), timeText(m_duration)));
    }
}

void MediaView::paintScreen(QPainter &painter) const
{
    const QRect room = m_screen->rect();
    painter.fillRect(room, m_picture.isNull() ? theme::preview::page : theme::preview::video);
    if (!m_picture.isNull()) { // of a video; sounds have the icon of their type
        QRect place(QPoint(), m_picture.size().scaled(room.size(), Qt::KeepAspectRatio));
        place.moveCenter(room.center());
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawImage(place, m_picture);
        return;
    }
    constexpr int maxSide = 128;
    constexpr int margin = 10;
    constexpr int flags =
        static_cast<int>(Qt::AlignHCenter | Qt::AlignTop) | static_cast<int>(Qt::TextWordWrap);
    const QRect lines = room.adjusted(margin, 0, -margin, 0);
    const int hintHeight =
        m_hint.isEmpty() ? 0 : painter.boundingRect(lines, flags, m_hint).height() + margin;
    const int side = std::clamp(room.height() - hintHeight - 2 * margin, 0, maxSide);
    const int top = (room.height() - side - hintHeight) / 2;
    drawFileTypeIcon(painter, m_info, {(room.width() - side) / 2, top, side, side});
    painter.setPen(theme::preview::text);
    painter.drawText(lines.adjusted(0, top + side + margin, 0, 0), flags, m_hint);
}

} // namespace tessaly
