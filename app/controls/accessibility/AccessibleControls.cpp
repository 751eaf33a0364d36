#include "app/controls/accessibility/AccessibleControls.hpp"

#include "app/controls/accessibility/AccessibleCellTable.hpp"
#include "app/controls/accessibility/SpokenNotice.hpp"
#include "app/controls/alerts/MessageAlert.hpp"
#include "app/controls/alerts/SheetGroup.hpp"
#include "app/controls/alerts/WindowSheet.hpp"
#include "app/controls/frame/KORVENWindow.hpp"
#include "app/controls/tables/CellTableView.hpp"
#include "app/controls/text/NameLabel.hpp"

#include <QAccessible>
#include <QAccessibleWidget>

namespace tessaly {

namespace {

/// A sheet takes all input of its window.
class AccessibleSheet final : public QAccessibleWidget {
public:
    AccessibleSheet(WindowSheet &sheet, QAccessible::Role role) : QAccessibleWidget(&sheet, role) {}

    [[nodiscard]] QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.modal = true;
        return state;
    }
};

/// Qt asks for the name of each class of an object, the most derived one first.
QAccessibleInterface *makeInterface(const QString & /*className*/, QObject *object)
{
    if (auto *table = qobject_cast<CellTableView *>(object)) {
        return new AccessibleCellTable(*table);
    }
    if (auto *sheet = qobject_cast<WindowSheet *>(object)) {
        return new AccessibleSheet(*sheet, qobject_cast<MessageAlert *>(sheet) != nullptr
                                               ? QAccessible::AlertMessage
                                               : QAccessible::Dialog);
    }
    if (auto *window = qobject_cast<KORVENWindow *>(object)) {
        return new QAccessibleWidget(window, QAccessible::Window);
    }
    if (auto *group = qobject_cast<SheetGroup *>(object)) {
        return new QAccessibleWidget(group, QAccessible::Grouping);
    }
    if (auto *label = qobject_cast<NameLabel *>(object)) {
        return new QAccessibleWidget(label, QAccessible::StaticText);
    }
    if (auto *notice = qobject_cast<SpokenNotice *>(object)) {
        return new QAccessibleWidget(notice, QAccessible::Notification);
    }
    return nullptr;
}

} // namespace

void installAccessibleControls()
{
    QAccessible::installFactory(&makeInterface);
}

} // namespace tessaly
