#include "app/window/Sidebar.hpp"

#include "app/controls/interface/InterfaceFile.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/theme/Theme.hpp"

#include <QVBoxLayout>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

constexpr int rowHeight = 52;
constexpr int roomAbove = 10;

} // namespace

Sidebar::Sidebar(std::vector<Row> rows, TypeSelect shouldTypeSelect, QWidget *parent)
    : QWidget(parent), m_rows(std::move(rows)), m_shouldTypeSelect(std::move(shouldTypeSelect)),
      m_outlineTable(new CellTableView(this))
{
    setMinimumWidth(usualWidth);
    setAutoFillBackground(true);
    QPalette colors = palette();
    // Both row colours: the list has no stripes, unlike the tables of the screens.
    for (const auto role : {QPalette::Base, QPalette::AlternateBase, QPalette::Window}) {
        colors.setColor(role, theme::sidebar);
    }
    colors.setColor(QPalette::Highlight, theme::selection);
    setPalette(colors);
    m_outlineTable->setPalette(colors);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, roomAbove, 0, 0);
    layout->addWidget(m_outlineTable);

    m_outlineTable->setObjectName(u"outlineTable"_s);
    m_outlineTable->setAccessibleName(tr("Screens"));
    m_outlineTable->setRowHeight(rowHeight);
    for (const Row &row : m_rows) {
        const QString &name = row.cellIdentifier;
        // Each row has an interface file of its own, so each is registered under its own identifier
        // and never reused for another row.
        m_outlineTable->registerCells(
            name, [name]() -> std::unique_ptr<QWidget> { return InterfaceFile::load(name).root; });
    }
    m_outlineTable->setDataSource(this);
    // By the current row, which the arrow keys and selectRow() change alike. It is invalid for a
    // moment while the rows are reset.
    connect(m_outlineTable->selectionModel(), &QItemSelectionModel::currentRowChanged, this,
            [this](const QModelIndex &current) {
                if (current.isValid()) {
                    Q_EMIT selectionChanged(current.row());
                }
            });
}

Sidebar::~Sidebar()
{
    // The table is a child and is destroyed by ~QWidget, when this is not a source any more.
    m_outlineTable->setDataSource(nullptr);
}

int Sidebar::selectedRow() const
{
    return m_outlineTable->selectedRow();
}

void Sidebar::selectRow(int row)
{
    m_outlineTable->selectRow(row);
}

int Sidebar::numberOfRowsInTableView() const
{
    return static_cast<int>(m_rows.size());
}

QWidget *Sidebar::viewForTableColumn(int row)
{
    return row >= 0 && row < numberOfRowsInTableView()
               ? m_outlineTable->makeView(m_rows[static_cast<std::size_t>(row)].cellIdentifier)
               : nullptr;
}

QString Sidebar::searchText(int row) const
{
    return m_rows[static_cast<std::size_t>(row)].title;
}

bool Sidebar::shouldTypeSelectForEvent(const QKeyEvent &event, const QString &typed)
{
    return m_shouldTypeSelect(event, typed);
}

} // namespace tessaly
