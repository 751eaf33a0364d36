#pragma once

#include <QObject>

#include <chrono>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tessaly {

/// The volumes that are being ejected or unmounted, until they are no longer listed or the eject
/// was refused. Without either, a volume counts as done after a timeout.
///
/// Threads: the main thread.
class EjectingVolumes final : public QObject {
    Q_OBJECT

public:
    explicit EjectingVolumes(std::chrono::milliseconds timeout = std::chrono::seconds(8));

    /// Adds a volume. The timeout starts again for one that is there already.
    void add(const std::string &name);
    /// The eject was refused.
    void remove(const std::string &name);
    [[nodiscard]] std::vector<std::string> names() const;
    [[nodiscard]] bool contains(const std::string &name) const { return m_names.contains(name); }
    /// Removes all others. Does not emit changed().
    void keepOnly(const std::set<std::string> &names);

Q_SIGNALS:
    /// A volume was added, refused or timed out.
    void changed();

private:
    const std::chrono::milliseconds m_timeout;
    std::map<std::string, std::uint64_t> m_names; ///< with the number of the last request
    std::uint64_t m_requestCount = 0;
};

} // namespace tessaly
