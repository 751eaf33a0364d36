#pragma once

#include <QCoreApplication>

#include <thread>

namespace tessaly {

/// Runs the event loop until the condition holds.
template <typename Condition>
void waitUntil(Condition holds)
{
    while (!holds()) {
        QCoreApplication::processEvents();
        std::this_thread::yield();
    }
}

} // namespace tessaly
