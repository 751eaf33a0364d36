#pragma once

#include <QMetaObject>
#include <QObject>

class QStackedWidget;

namespace tessaly {

class CellTableView;
class Pages;

/// Makes screen readers speak the rows of a page when it opens, or as soon as it has rows.
///
/// Threads: the main thread.
class SpokenPages final : public QObject {
    Q_OBJECT

public:
    /// Begins with the page of `view` that is shown now. Both must outlive this.
    SpokenPages(QStackedWidget &view, const Pages &pages);

private:
    void pageOpened();
    void speak(CellTableView &table);

    QStackedWidget *m_view;
    const Pages &m_pages;
    QMetaObject::Connection m_rowsCame; ///< while the open page has no rows
};

} // namespace tessaly
