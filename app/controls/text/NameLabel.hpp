#pragma once

#include "app/controls/text/ClickableView.hpp"

#include <QString>

namespace tessaly {

/// A line of text that is elided, in its middle at first, and that may be clicked. For names and
/// paths: text() is the text as it was set, byte for byte; control characters and characters that
/// change the direction of the text are drawn as question marks.
///
/// Tooltip: with any set, it shows the whole text of the label, in lines that fit onto the screen.
class NameLabel : public ClickableView {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)
    Q_PROPERTY(bool tellsWhenShortened READ tellsWhenShortened WRITE setTellsWhenShortened)
    Q_PROPERTY(Qt::TextElideMode elideMode READ elideMode WRITE setElideMode)

public:
    explicit NameLabel(QWidget *parent = nullptr);

    [[nodiscard]] const QString &text() const noexcept { return m_text; }
    void setText(const QString &text);

    [[nodiscard]] Qt::Alignment alignment() const noexcept { return m_alignment; }
    void setAlignment(Qt::Alignment alignment);

    /// Whether an elided text has a tooltip even if none is set; false at first.
    [[nodiscard]] bool tellsWhenShortened() const noexcept { return m_tellsWhenShortened; }
    void setTellsWhenShortened(bool tells) noexcept { m_tellsWhenShortened = tells; }
    [[nodiscard]] bool isShortened() const;

    [[nodiscard]] Qt::TextElideMode elideMode() const noexcept { return m_elideMode; }
    void setElideMode(Qt::TextElideMode mode);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    /// The text, not the room beside it.
    [[nodiscard]] QRect clickableRect() const override;
    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
    QString m_shownText;
    Qt::Alignment m_alignment = Qt::AlignLeading | Qt::AlignVCenter;
    bool m_tellsWhenShortened = false;
    Qt::TextElideMode m_elideMode = Qt::ElideMiddle;
};

/// The text as NameLabel draws it.
[[nodiscard]] QString drawableText(const QString &text);

} // namespace tessaly
