#pragma once

#include <QObject>

#include <chrono>
#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace tessaly {

/// The volumes that were asked to go and are on their way, as far as anybody can tell: what comes
/// of it is not told, so each counts as on its way for a while, or until it is listed no more.
///
/// Threads: the main thread.
class EjectingVolumes final : public QObject {
    Q_OBJECT

public:
    explicit EjectingVolumes(std::chrono::milliseconds patience = std::chrono::seconds(8));

    /// From now on, anew if it was so already.
    void add(const std::string &name);
    [[nodiscard]] bool contains(const std::string &name) const { return m_names.contains(name); }
    /// Forgets those that are not among the names. Sends nothing.
    void keepOnly(const std::set<std::string> &names);

Q_SIGNALS:
    /// Volumes came or went by time; not those that keepOnly() forgets.
    void changed();

private:
    const std::chrono::milliseconds m_patience;
    std::map<std::string, std::uint64_t> m_names; ///< with the number of the last request
    std::uint64_t m_requestCount = 0;
};

} // namespace tessaly
