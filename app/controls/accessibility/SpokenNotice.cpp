#include "app/controls/accessibility/SpokenNotice.hpp"

#include <QAccessible>

namespace tessaly {

SpokenNotice::SpokenNotice(QWidget &window) : QWidget(&window)
{
    setFocusPolicy(Qt::NoFocus);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    resize(0, 0); // empty, but not hidden, since hidden widgets are not spoken
    show();
}

void SpokenNotice::say(QWidget &window, const QString &text)
{
    if (text.isEmpty()) {
        return;
    }
    auto *notice = window.findChild<SpokenNotice *>(QString(), Qt::FindDirectChildrenOnly);
    if (notice == nullptr) {
        notice = new SpokenNotice(window);
    }
    notice->setAccessibleName(text);
    // Screen readers speak a notification when it is shown.
    for (const QAccessible::Event type : {QAccessible::ObjectHide, QAccessible::ObjectShow}) {
        QAccessibleEvent event(notice, type);
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace tessaly
