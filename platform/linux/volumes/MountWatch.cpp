#include "platform/linux/volumes/MountWatch.hpp"

#include <utility>

#include <fcntl.h>

namespace tessaly {

MountWatch::MountWatch(const std::string &mountInfo, std::function<void()> changed)
    : m_file(open(mountInfo.c_str(), O_RDONLY | O_CLOEXEC))
{
    if (!m_file.isOpen()) {
        return;
    }
    // poll() reports a change of the mounts as an exceptional condition, once; the file itself need
    // not be read for that.
    m_notifier = std::make_unique<QSocketNotifier>(m_file.number(), QSocketNotifier::Exception);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [changed = std::move(changed)] { changed(); });
}

} // namespace tessaly
