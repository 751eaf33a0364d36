#include "app/screen/TableScreen.hpp"

#include "app/controls/buttons/KORVENButton.hpp"
#include "app/controls/theme/Theme.hpp"
#include "app/delegate/KORVENAppDelegate.hpp"

#include <QLabel>
#include <QStackedWidget>

#include <utility>

namespace tessaly {

TableScreen::TableScreen(QObject &object, const QString &nibName, CellKind cells)
    : m_object(object), m_pressGuard(&object), m_cells(std::move(cells))
{
    InterfaceFile::Loaded loaded = InterfaceFile::load(nibName);
    if (!loaded.root) {
        qFatal("%s: %s", qUtf8Printable(nibName), qUtf8Printable(loaded.error));
    }
    m_view = loaded.root.release();
    m_tableView = &find<CellTableView>("tableView");
    m_emptyPage = &find<QWidget>("emptyPage");
    m_emptyTitle = &find<QLabel>("emptyTitle");
    m_emptyText = &find<QLabel>("emptyText");
    m_pages = qobject_cast<QStackedWidget *>(m_tableView->parentWidget());
    if (m_pages == nullptr || m_pages->indexOf(m_emptyPage) < 0) {
        qFatal("%s: the table and the empty page are not pages of one stack",
               qUtf8Printable(nibName));
    }
    makeTitle(*m_emptyTitle);
    makeCaption(*m_emptyText);
}

TableScreen::~TableScreen()
{
    closeView();
}

void TableScreen::closeView()
{
    if (m_view) {
        m_tableView->setDataSource(nullptr);
        delete m_view;
    }
}

void TableScreen::wire(const std::vector<WiredAction> &actions)
{
    const QStringList missing = wireActions(*m_view, m_object, actions);
    if (!missing.isEmpty()) {
        qFatal("there are no buttons %s", qUtf8Printable(missing.join(u", ")));
    }
}

void TableScreen::awakeFromNib()
{
    if (!std::exchange(m_firstRunFlag, false)) {
        return;
    }
    if (KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
        for (auto *button : m_view->findChildren<KORVENButton *>()) {
            button->set10p7Mode();
        }
    } else {
        m_tableView->registerCells(m_cells.identifier, m_cells.load);
    }
    m_tableView->setDataSource(this);
    setUp();
}

QWidget &TableScreen::nextCell()
{
    if (QWidget *cell = m_tableView->makeView(m_cells.identifier)) {
        return *cell;
    }
    std::unique_ptr<QWidget> made;
    if (KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
        made = m_cells.load();
    }
    if (!made) {
        made = m_cells.makeBare();
    }
    return *m_tableView->adoptView(std::move(made), m_cells.identifier);
}

void TableScreen::selectInPlace(int row)
{
    // A view scrolls to its current row by itself.
    m_tableView->setAutoScroll(false);
    m_tableView->selectRow(row);
    m_tableView->setAutoScroll(true);
}

void TableScreen::setEmptyTexts(const QString &title, const QString &text)
{
    m_emptyTitle->setText(title);
    m_emptyText->setText(text);
    m_emptyText->setVisible(!text.isEmpty());
}

void TableScreen::showTable()
{
    m_pages->setCurrentWidget(m_tableView);
}

void TableScreen::showEmptyPage()
{
    m_pages->setCurrentWidget(m_emptyPage);
}

} // namespace tessaly
