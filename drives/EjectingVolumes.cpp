#include "drives/EjectingVolumes.hpp"

#include <QTimer>

namespace tessaly {

EjectingVolumes::EjectingVolumes(std::chrono::milliseconds patience) : m_patience(patience) {}

void EjectingVolumes::add(const std::string &name)
{
    const std::uint64_t request = ++m_requestCount;
    m_names[name] = request;
    QTimer::singleShot(m_patience, this, [this, name, request] {
        const auto found = m_names.find(name);
        if (found != m_names.end() && found->second == request) {
            m_names.erase(found);
            Q_EMIT changed();
        }
    });
    Q_EMIT changed();
}

void EjectingVolumes::keepOnly(const std::set<std::string> &names)
{
    std::erase_if(m_names, [&](const auto &ejecting) { return !names.contains(ejecting.first); });
}

} // namespace tessaly
