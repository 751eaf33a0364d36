#pragma once

#include "app/controls/ClickableView.hpp"

#include <QString>

namespace tessaly {

/// A line of text that is shortened in the middle where there is no room for it, and that may be
/// clicked. For names and paths: text() is the text as it was set, of which every character counts;
/// what cannot be shown, or would turn the direction of the text, is drawn as a question mark.
///
/// Tooltip: with one set, the pointer brings up the whole text, in lines that fit onto the screen.
class NameLabel : public ClickableView {
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)
    Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)
    Q_PROPERTY(bool tellsWhenShortened READ tellsWhenShortened WRITE setTellsWhenShortened)

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
};

/// The text as it is drawn: without what has no look of its own.
[[nodiscard]] QString drawableText(const QString &text);

} // namespace tessaly
