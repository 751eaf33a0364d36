#include "preview/PreviewTheme.hpp"

#include "app/controls/theme/Theme.hpp"

#include <QPalette>
#include <QWidget>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

/// What palettes do not reach.
QString previewStyleSheet()
{
    using namespace theme::preview;
    return styleSheetWithColors(uR"(
        QPlainTextEdit { background: @page; color: @text;
                         selection-background-color: @accent; selection-color: @selectedText; }
        QScrollBar { background: transparent; }
        QScrollBar:vertical { width: 12px; }
        QScrollBar:horizontal { height: 12px; }
        QScrollBar::handle { background: @scrollHandle; border-radius: 4px; margin: 2px; }
        QScrollBar::handle:vertical { min-height: 28px; }
        QScrollBar::handle:horizontal { min-width: 28px; }
        QScrollBar::handle:hover { background: @scrollHandleHover; }
        QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
        QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }
        QAbstractScrollArea::corner { background: transparent; }
        QSlider::groove { height: 4px; border-radius: 2px; background: @groove; }
        QSlider::sub-page { border-radius: 2px; background: @accent; }
        QSlider::handle { width: 12px; margin: -4px 0; border-radius: 6px; background: @text; }
        QSlider::handle:focus { background: @focusedKnob; }
        QToolTip { background: @toolTip; color: @text; border: 1px solid @line; }
    )"_s,
                                {{"page"_L1, page},
                                 {"text"_L1, text},
                                 {"accent"_L1, accent},
                                 {"selectedText"_L1, selectedText},
                                 {"scrollHandle"_L1, scrollHandle},
                                 {"scrollHandleHover"_L1, scrollHandleHover},
                                 {"groove"_L1, groove},
                                 {"focusedKnob"_L1, focusedKnob},
                                 {"toolTip"_L1, toolTip},
                                 {"line"_L1, line}});
}

} // namespace

void applyPreviewTheme(QWidget &window)
{
    // Both: style sheets do not reach what widgets paint with their palette, and a palette does not
    // reach the scroll bars and sliders of every style.
    window.setPalette(previewPalette());
    window.setStyleSheet(previewStyleSheet());
}

void setTextColor(QWidget &label, const QColor &color)
{
    // By the palette: a style sheet for each label would be parsed each time, and override the
    // window's.
    QPalette palette = label.palette();
    palette.setColor(QPalette::WindowText, color);
    label.setPalette(palette);
}

void setTextStyle(QWidget &label, int pixelSize, QFont::Weight weight, const QColor &color)
{
    QFont font = label.font();
    // Pixels, since the header and the note have fixed heights.
    font.setPixelSize(pixelSize);
    font.setWeight(weight);
    label.setFont(font);
    setTextColor(label, color);
}

} // namespace tessaly
