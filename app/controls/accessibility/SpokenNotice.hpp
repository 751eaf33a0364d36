#pragma once

#include <QString>
#include <QWidget>

namespace tessaly {

/// A text that screen readers speak at once and that nobody sees.
///
/// Threads: the main thread.
class SpokenNotice final : public QWidget {
    Q_OBJECT

public:
    /// Has the screen readers that watch this window speak the text. The window owns the notice
    /// that this takes, one for all texts. An empty text is not spoken.
    static void say(QWidget &window, const QString &text);

private:
    explicit SpokenNotice(QWidget &window);
};

} // namespace tessaly
