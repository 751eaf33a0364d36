#pragma once

#include <QAbstractButton>

#include <cstdint>

namespace tessaly {

/// A small button with a glyph on it, which is drawn as a path: sharp at any scale.
class GlyphButton final : public QAbstractButton {
    Q_OBJECT

public:
    enum class Glyph : std::uint8_t { previous, next, fullScreen, window, close, play, pause };

    /// The name is that for screen readers, and the tooltip.
    GlyphButton(Glyph glyph, const QString &name, QWidget *parent = nullptr);

    void setGlyph(Glyph glyph, const QString &name);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    Glyph m_glyph;
};

} // namespace tessaly
