#pragma once

#include <QWidget>

namespace tessaly {

class GlyphButton;
class NameLabel;

/// The header of the panel: the file's name, with the buttons to page on its left and those of the
/// window on its right. Its window paints what lies behind.
class PreviewHeader final : public QWidget {
    Q_OBJECT

public:
    explicit PreviewHeader(QWidget *parent = nullptr);

    /// With a name, the title of a file: only that has a tooltip.
    void setTitle(const QString &title, const QString &fileName);
    void setCanPage(bool canPage);
    /// Has the button offer to leave full screen, or to enter it.
    void setShownFullScreen(bool isFullScreen);

    [[nodiscard]] NameLabel &titleLabel() const { return *m_title; }

Q_SIGNALS:
    /// By 1 forwards, by -1 backwards.
    void pagingAsked(int step);
    void fullScreenAsked();
    void closeAsked();

private:
    GlyphButton *m_previous;
    GlyphButton *m_next;
    NameLabel *m_title;
    GlyphButton *m_fullScreen;
};

} // namespace tessaly
