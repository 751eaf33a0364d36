#pragma once

#include <memory>

class QThread;

namespace tessaly {

/// Takes over a thread that was told to quit and may take its time. Nobody waits for it but the end
/// of the process.
///
/// If the thread uses Qt's D-Bus, that must have been used before by the time this is called, or
/// not be used any more: then it is there until the thread has ended.
void endLater(std::unique_ptr<QThread> thread);

} // namespace tessaly
