#include "preview/PreviewHeader.hpp"

#include "app/controls/text/NameLabel.hpp"
#include "app/controls/theme/Theme.hpp"
#include "preview/GlyphButton.hpp"
#include "preview/PreviewTheme.hpp"

#include <QHBoxLayout>

namespace tessaly {

PreviewHeader::PreviewHeader(QWidget *parent)
    : QWidget(parent),
      m_previous(new GlyphButton(GlyphButton::Glyph::previous, tr("Previous file"))),
      m_next(new GlyphButton(GlyphButton::Glyph::next, tr("Next file"))), m_title(new NameLabel),
      m_fullScreen(new GlyphButton(GlyphButton::Glyph::fullScreen, tr("Full screen")))
{
    setFixedHeight(40);
    setTextStyle(*m_title, 14, QFont::DemiBold, theme::preview::text);
    m_title->setAlignment(Qt::AlignCenter);
    auto *close = new GlyphButton(GlyphButton::Glyph::close, tr("Close"));

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 6);
    layout->setSpacing(4);
    layout->addWidget(m_previous);
    layout->addWidget(m_next);
    layout->addSpacing(6);
    layout->addWidget(m_title, 1);
    layout->addSpacing(6);
    layout->addWidget(m_fullScreen);
    layout->addWidget(close);

    // Only signals: the keys ask for the same, and the window answers both.
    connect(m_previous, &GlyphButton::clicked, this, [this] { Q_EMIT pagingAsked(-1); });
    connect(m_next, &GlyphButton::clicked, this, [this] { Q_EMIT pagingAsked(1); });
    connect(m_fullScreen, &GlyphButton::clicked, this, &PreviewHeader::fullScreenAsked);
    connect(close, &GlyphButton::clicked, this, &PreviewHeader::closeAsked);
}

void PreviewHeader::setTitle(const QString &title, const QString &fileName)
{
    m_title->setText(title);
    // The title may be elided, and then the name is what counts.
    m_title->setToolTip(fileName);
}

void PreviewHeader::setCanPage(bool canPage)
{
    // Disabled and not hidden, so that the title stays in its place.
    m_previous->setEnabled(canPage);
    m_next->setEnabled(canPage);
}

void PreviewHeader::setShownFullScreen(bool isFullScreen)
{
    m_fullScreen->setGlyph(isFullScreen ? GlyphButton::Glyph::window
                                        : GlyphButton::Glyph::fullScreen,
                           isFullScreen ? tr("Leave full screen") : tr("Full screen"));
}

} // namespace tessaly
