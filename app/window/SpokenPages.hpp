#pragma once

#include <QMetaObject>
#include <QObject>

class QStackedWidget;

namespace tessaly {

class CellTableView;

/// Has screen readers speak the rows of a page when it opens: at once, or when the first rows come.
///
/// Threads: the main thread.
class SpokenPages final : public QObject {
    Q_OBJECT

public:
    /// Begins with the page that is shown now. `pages` must outlive this.
    explicit SpokenPages(QStackedWidget &pages);

private:
    void pageOpened();
    void speak(CellTableView &table);

    QStackedWidget *m_pages;
    QMetaObject::Connection m_rowsCame; ///< while rows are waited for
};

} // namespace tessaly
