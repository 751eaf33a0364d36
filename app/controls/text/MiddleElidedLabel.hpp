#pragma once

#include <QLabel>
#include <QString>

namespace tessaly {

/// One line of plain text that can be selected. Where it is too long, its middle is left out; a
/// tooltip then has all of it, and copying the whole line copies all of it, too.
class MiddleElidedLabel final : public QLabel {
    Q_OBJECT

public:
    explicit MiddleElidedLabel(const QString &text, QWidget *parent = nullptr);

    /// All of it; text() is what fits.
    [[nodiscard]] const QString &fullText() const { return m_fullText; }

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void elide();
    void copy() const;

    QString m_fullText;
};

} // namespace tessaly
