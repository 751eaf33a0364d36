#pragma once

#include <QApplication>

namespace tessaly {

/// The application, with an end to exceptions that escape from what an event leads to: they count
/// as uncaught there and then, before they run through code that knows nothing of exceptions.
class GuardedApplication final : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject *receiver, QEvent *event) noexcept override;
};

} // namespace tessaly
