#include "drives/EjectingVolumes.hpp"

#include <QTimer>

namespace tessaly {

EjectingVolumes::EjectingVolumes(std::chrono::milliseconds timeout) : m_timeout(timeout) {}

void EjectingVolumes::add(const std::string &name)
{
    const std::uint64_t request = ++m_requestCount;
    m_names[name] = request;
    // A single shot cannot be cancelled, so the timer of an earlier request still fires. The number
    // keeps it from ending a later one. With `this` as its context, it does not fire after the
    // destruction.
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
    // No signal: the caller is about to rebuild the rows anyway.
    std::erase_if(m_names, [&](const auto &ejecting) { return !names.contains(ejecting.first); });
}

} // namespace tessaly
