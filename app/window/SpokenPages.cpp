#include "app/window/SpokenPages.hpp"

#include "app/controls/tables/CellTableView.hpp"
#include "app/window/Pages.hpp"

#include <QAbstractItemModel>
#include <QStackedWidget>

namespace tessaly {

SpokenPages::SpokenPages(QStackedWidget &view, const Pages &pages) : m_view(&view), m_pages(pages)
{
    // Queued: the code that opens a page may load its rows next.
    connect(m_view, &QStackedWidget::currentChanged, this, &SpokenPages::pageOpened,
            Qt::QueuedConnection);
    pageOpened();
}

void SpokenPages::pageOpened()
{
    disconnect(m_rowsCame);
    CellTableView *table = m_pages.screen(m_view->currentIndex()).rowsTable();
    if (table == nullptr) {
        return;
    }
    // Queued: a screen fills its table first and shows it afterwards.
    m_rowsCame = connect(
        table->model(), &QAbstractItemModel::modelReset, this, [this, table] { speak(*table); },
        Qt::QueuedConnection);
    speak(*table);
}

void SpokenPages::speak(CellTableView &table)
{
    // Once for each time that a page opens: a refresh or a sort must not read out the rows again.
    if (m_rowsCame && table.isVisible() && table.model()->rowCount() > 0) {
        disconnect(m_rowsCame);
        m_rowsCame = {};
        table.speakRows();
    }
}

} // namespace tessaly
