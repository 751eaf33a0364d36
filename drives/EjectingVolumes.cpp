#include "drives/EjectingVolumes.hpp"

#include <QTimer>

namespace tessaly {

EjectingVolumes::EjectingVolumes(std::chrono::milliseconds timeout) : m_timeout(timeout) {}

void EjectingVolumes::add(const std::string &name)
{
    const std::uint64_t request = ++m_requestCount;
    m_names[name] = request;
    QTimer::singleShot(m_timeout, this, [this, name, request] {
        const auto found = m_names.find(name);
        if (found != m_names.end() && found->second == request) {
            m_names.erase(found);
            Q_EMIT changed();
        }
    });
    Q_EMIT changed();
}

void EjectingVolumes::remove(const std::string &name)
{
    if (m_names.erase(name) > 0) {
        Q_EMIT changed();
    }
}

std::vector<std::string> EjectingVolumes::names() const
{
    std::vector<std::string> names;
    for (const auto &[name, request] : m_names) {
        names.push_back(name);
    }
    return names;
}

void EjectingVolumes::keepOnly(const std::set<std::string> &names)
{
    std::erase_if(m_names, [&](const auto &ejecting) { return !names.contains(ejecting.first); });
}

} // namespace tessaly
