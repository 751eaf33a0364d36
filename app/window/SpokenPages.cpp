#include "app/window/SpokenPages.hpp"

#include "app/controls/tables/CellTableView.hpp"

#include <QAbstractItemModel>
#include <QStackedWidget>

namespace tessaly {

SpokenPages::SpokenPages(QStackedWidget &pages) : m_pages(&pages)
{
    // Queued: what opens a page has more to do with it first, such as loading its rows.
    connect(m_pages, &QStackedWidget::currentChanged, this, &SpokenPages::pageOpened,
            Qt::QueuedConnection);
    pageOpened();
}

void SpokenPages::pageOpened()
{
    disconnect(m_rowsCame);
    const QWidget *page = m_pages->currentWidget();
    auto *table = page != nullptr ? page->findChild<CellTableView *>() : nullptr;
    if (table == nullptr) {
        return;
    }
    // Queued: a table is brought into sight after it got its rows.
    m_rowsCame = connect(
        table->model(), &QAbstractItemModel::modelReset, this, [this, table] { speak(*table); },
        Qt::QueuedConnection);
    speak(*table);
}

void SpokenPages::speak(CellTableView &table)
{
    if (m_rowsCame && table.isVisible() && table.model()->rowCount() > 0) {
        disconnect(m_rowsCame);
        m_rowsCame = {};
        table.speakRows();
    }
}

} // namespace tessaly
