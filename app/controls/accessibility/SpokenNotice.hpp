#pragma once

#include <QString>
#include <QWidget>

namespace tessaly {

/// A text that screen readers speak at once, and that is not seen.
///
/// Threads: the main thread.
class SpokenNotice final : public QWidget {
    Q_OBJECT

public:
    /// Has screen readers speak the text. The window owns one notice for all texts. An empty text
    /// is not spoken.
    static void say(QWidget &window, const QString &text);

private:
    explicit SpokenNotice(QWidget &window);
};

} // namespace tessaly
