#include "app/screen/CellKind.hpp"

#include "app/delegate/KORVENAppDelegate.hpp"

#include <utility>

namespace tessaly {

void CellKind::registerIn(CellTableView &table) const
{
    // Tables of release 10.7 cannot load cells by themselves; nextOf() does it there. On Linux the
    // flag is false, and the other way stays reachable as a required oddity.
    if (!KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
        table.registerCells(identifier, load);
    }
}

QWidget &CellKind::nextOf(CellTableView &table) const
{
    if (QWidget *cell = table.makeView(identifier)) {
        return *cell;
    }
    std::unique_ptr<QWidget> made;
    if (KORVENAppDelegate::sharedDelegate().run10p7Mode()) {
        made = load();
    }
    if (!made) {
        made = makeBare();
    }
    return *table.adoptView(std::move(made), identifier);
}

} // namespace tessaly
