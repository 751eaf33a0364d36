#pragma once

#include <QAbstractButton>

#include <cstdint>

namespace tessaly {

/// A small button with a drawing on it, sharp at any scale.
class GlyphButton final : public QAbstractButton {
    Q_OBJECT

public:
    enum class Glyph : std::uint8_t { previous, next, fullScreen, window, close, play, pause };

    /// The name is what a screen reader says, and the tool tip.
    GlyphButton(Glyph glyph, const QString &name, QWidget *parent = nullptr);

    void setGlyph(Glyph glyph, const QString &name);
    [[nodiscard]] Glyph glyph() const noexcept { return m_glyph; }

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Glyph m_glyph;
};

} // namespace tessaly
