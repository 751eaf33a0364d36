#pragma once

#include <QObject>

#include <chrono>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tessaly {

/// The volumes that were asked to go, until they are listed no more or are known to stay. What does
/// not become known counts as done after a while.
///
/// Threads: the main thread.
class EjectingVolumes final : public QObject {
    Q_OBJECT

public:
    explicit EjectingVolumes(std::chrono::milliseconds timeout = std::chrono::seconds(8));

    /// From now on, anew if it was so already.
    void add(const std::string &name);
    /// It stays.
    void remove(const std::string &name);
    [[nodiscard]] std::vector<std::string> names() const;
    [[nodiscard]] bool contains(const std::string &name) const { return m_names.contains(name); }
    /// Forgets those that are not among the names. Sends nothing.
    void keepOnly(const std::set<std::string> &names);

Q_SIGNALS:
    /// Volumes came, or went because they stay or by time; not those that keepOnly() forgets.
    void changed();

private:
    const std::chrono::milliseconds m_timeout;
    std::map<std::string, std::uint64_t> m_names; ///< with the number of the last request
    std::uint64_t m_requestCount = 0;
};

} // namespace tessaly
