#include "engine/scan/DescriptorShare.hpp"

#include <fcntl.h>

namespace tessaly::scan {

FileDescriptor DescriptorShare::open(int folder, const char *name, int flags)
{
    for (;;) {
        FileDescriptor opened(openat(folder, name, flags | O_CLOEXEC));
        if (opened.isOpen()) {
            noteRelief();
            return opened;
        }
        const int error = errno;
        if (error == EINTR) {
            continue;
        }
        const bool again =
            isDescriptorShortage(error) && ((m_makeRoom && m_makeRoom()) || waitForRelief());
        if (!again) {
            errno = error;
            return opened;
        }
    }
}

} // namespace tessaly::scan
