#include "app/window/GuardedApplication.hpp"

namespace tessaly {

bool GuardedApplication::notify(QObject *receiver, QEvent *event) noexcept
{
    return QApplication::notify(receiver, event);
}

} // namespace tessaly
