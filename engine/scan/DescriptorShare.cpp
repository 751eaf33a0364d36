#include "engine/scan/DescriptorShare.hpp"

#include <fcntl.h>

namespace tessaly::scan {

FileDescriptor DescriptorShare::open(int folder, const char *name, int flags)
{
    for (;;) {
        FileDescriptor opened(openat(folder, name, flags | O_CLOEXEC));
        if (opened.isOpen()) {
            noteOpened();
            return opened;
        }
        const int error = errno;
        if (error == EINTR) {
            continue;
        }
        // A descriptor of this walk comes first: it is free at once, and other walks that wait in
        // the same way would never release theirs.
        const bool isWorthTrying =
            isDescriptorShortage(error) && ((m_makeRoom && m_makeRoom()) || waitForDescriptor());
        if (!isWorthTrying) {
            errno = error;
            return opened;
        }
    }
}

} // namespace tessaly::scan
