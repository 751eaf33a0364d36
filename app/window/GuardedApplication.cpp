#include "app/window/GuardedApplication.hpp"

namespace tessaly {

/// noexcept ends the program where the exception leaves our code. Qt is not made to be unwound by
/// one, and the trace of a crash shows where it came from.
bool GuardedApplication::notify(QObject *receiver, QEvent *event) noexcept
{
    return QApplication::notify(receiver, event);
}

} // namespace tessaly
