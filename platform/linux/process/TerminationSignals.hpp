#pragma once

#include "engine/scan/FileDescriptor.hpp"

#include <QSocketNotifier>

#include <optional>

namespace tessaly {

/// Ends the program in order when it is asked to by SIGTERM, SIGINT or SIGHUP: its windows are
/// closed and its event loop ends, as if the user had quit. The same signal a second time ends it
/// at once. A signal that was ignored when the program started stays ignored.
///
/// Requires: a QCoreApplication. One at a time; once it is destroyed, the signals have their usual
///           effect.
/// Threads:  the main thread.
class TerminationSignals {
public:
    TerminationSignals();
    ~TerminationSignals();
    Q_DISABLE_COPY_MOVE(TerminationSignals)

private:
    scan::FileDescriptor m_reading;
    scan::FileDescriptor m_writing;
    std::optional<QSocketNotifier> m_notifier;
};

} // namespace tessaly
