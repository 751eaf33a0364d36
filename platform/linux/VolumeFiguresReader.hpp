#pragma once

#include "platform/VolumeService.hpp"
#include "platform/linux/BackgroundWork.hpp"

#include <QObject>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessaly {

/// Reads the space of volumes, each on a thread of its own: a server that is gone may keep whoever
/// asks for its volume waiting for ever. There is one such thread for a volume at the most, however
/// often it is asked for, and nobody waits for it, neither this class nor the end of the process.
///
/// Threads: one, with an event loop.
class VolumeFiguresReader {
public:
    using Figures = std::optional<VolumeFigures>;
    /// Asks the file system at a path. Called on other threads; may take for ever, and may be under
    /// way when the process ends.
    using Source = std::function<Figures(const std::string &path)>;
    /// Takes one answer for each place that was asked for, in their order.
    using Answer = std::function<void(std::vector<Figures>)>;

    /// A path, and the number of the file system that is mounted there: if another one takes its
    /// place, that is another question.
    struct Place {
        std::string path;
        std::uint64_t device = 0;

        // NOLINTNEXTLINE(modernize-use-nullptr): it takes the defaulted operator for a 0
        auto operator<=>(const Place &) const = default;
    };

    explicit VolumeFiguresReader(Source source = figuresAt);

    /// Asks all at once. Answers once all have answered, or after `patience`; what has not answered
    /// by then is nothing. Never answers before it returns, nor after this is gone.
    void read(const std::vector<Place> &places, std::chrono::milliseconds patience, Answer answer);

    /// What the system says of the file system that holds a path. Free is what the user may still
    /// fill, without what is reserved for the system. Nothing when the path leads nowhere.
    [[nodiscard]] static Figures figuresAt(const std::string &path);

private:
    struct Batch;

    void ask(const Place &place, const std::shared_ptr<Batch> &batch, std::size_t index);
    void take(const Place &place, const Figures &figures);

    Source m_source;
    /// Who waits for the threads that are under way, and for which of their places.
    std::map<Place, std::vector<std::pair<std::weak_ptr<Batch>, std::size_t>>> m_waiting;
    QObject m_timers;
    BackgroundWork m_work; ///< ends first, and with it what it would call here
};

} // namespace tessaly
