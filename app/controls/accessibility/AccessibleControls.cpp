#include "app/controls/accessibility/AccessibleControls.hpp"

#include "app/controls/accessibility/AccessibleCellTable.hpp"
#include "app/controls/alerts/MessageAlert.hpp"
#include "app/controls/alerts/WindowSheet.hpp"
#include "app/controls/tables/CellTableView.hpp"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QHash>

using namespace Qt::StringLiterals;

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

/// The roles of controls for which Qt lacks nothing but the role. By the classes' names, since
/// the module with the previews has labels of its own, with a meta-object of their own.
QAccessible::Role roleOf(const QString &className)
{
    static const QHash<QString, QAccessible::Role> roles{
        {u"tessaly::KORVENWindow"_s, QAccessible::Window},
        {u"tessaly::NameLabel"_s, QAccessible::StaticText},
        {u"tessaly::SheetGroup"_s, QAccessible::Grouping},
        {u"tessaly::SpokenNotice"_s, QAccessible::Notification},
    };
    return roles.value(className, QAccessible::NoRole);
}

/// Qt asks for the name of each class of an object, the most derived one first.
QAccessibleInterface *makeInterface(const QString &className, QObject *object)
{
    if (auto *table = qobject_cast<CellTableView *>(object)) {
        return new AccessibleCellTable(*table);
    }
    if (auto *sheet = qobject_cast<WindowSheet *>(object)) {
        return new AccessibleSheet(*sheet, qobject_cast<MessageAlert *>(sheet) != nullptr
                                               ? QAccessible::AlertMessage
                                               : QAccessible::Dialog);
    }
    const QAccessible::Role role = roleOf(className);
    auto *widget = qobject_cast<QWidget *>(object);
    return role != QAccessible::NoRole && widget != nullptr ? new QAccessibleWidget(widget, role)
                                                            : nullptr;
}

} // namespace

void installAccessibleControls()
{
    QAccessible::installFactory(&makeInterface);
}

} // namespace tessaly
