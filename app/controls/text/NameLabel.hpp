#pragma once

#include "app/controls/text/ClickableView.hpp"

#include <QString>

namespace tessaly {

/// A line of text that is shortened where there is no room for it, in the middle if not told
/// otherwise, and that may be clicked. For names and paths: text() is the text as it was set, of
/// which every character counts; what cannot be shown, or would turn the direction of the text, is
/// drawn as a question mark.
///
/// Tooltip: with one set, the pointer brings up the whole text, in lines that fit onto the screen.
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

    /// Whether the pointer brings up a text that is shortened also without a tooltip. Not so at
    /// first.
    [[nodiscard]] bool tellsWhenShortened() const noexcept { return m_tellsWhenShortened; }
    void setTellsWhenShortened(bool tells) noexcept { m_tellsWhenShortened = tells; }
    [[nodiscard]] bool isShortened() const;

    /// What is left off where there is no room for the text: its middle at first.
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

/// The text as it is drawn: without what has no look of its own.
[[nodiscard]] QString drawableText(const QString &text);

} // namespace tessaly
