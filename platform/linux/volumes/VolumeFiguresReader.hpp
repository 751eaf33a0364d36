#pragma once

#include "platform/VolumeService.hpp"
#include "platform/background/BackgroundWork.hpp"

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

/// Reads the space of volumes, each on a thread of its own: a call for the volume of a server that
/// is gone may never return. There is at most one such thread for a volume, however often it is
/// asked for. Neither the destructor nor the end of the process waits for it.
///
/// A volume that does not answer in time, or answers with an error, keeps the figures that it had
/// the last time, marked as old, as long as the same file system is mounted there.
///
/// Threads: one, with an event loop.
class VolumeFiguresReader {
public:
    /// Nothing when they cannot be read.
    using Figures = std::optional<VolumeFigures>;
    /// What a source answers: no figures when they cannot be read, nothing when it was stopped.
    using Reading = std::optional<Figures>;

    /// A path, and the number of the file system that is mounted there: another file system at the
    /// same path is another question. Number 0: no volume is mounted there, so no figures are kept.
    struct Place {
        std::string path;
        std::uint64_t device = 0;
        bool mayHang = true; ///< it is on no disk of this computer: a server or a program serves it

        // NOLINTNEXTLINE(modernize-use-nullptr): it takes the defaulted operator for a 0
        auto operator<=>(const Place &) const = default;
    };

    /// What is known of a place.
    struct Space {
        Figures figures;
        bool isOld = false; ///< they were read before, and could not be read in time now

        bool operator==(const Space &) const = default;
    };

    /// Asks the file system at a place. Called on other threads; may never return, and may still be
    /// running when the process ends.
    using Source = std::function<Reading(const Place &place)>;
    /// Takes one answer for each place that was asked for, in their order.
    using Answer = std::function<void(std::vector<Space>)>;
    /// Takes the figures of one place, by its number in the question, that came after the timeout.
    /// Not called for an error: the figures that are known stay.
    using LateAnswer = std::function<void(std::size_t index, const VolumeFigures &figures)>;

    explicit VolumeFiguresReader(Source source);

    /// Asks all at once. Answers once all have answered, or after `timeout`. Answers that come
    /// later go to `late`, until the next read(). Neither is called before this returns, nor after
    /// this object is destroyed.
    void read(const std::vector<Place> &places, std::chrono::milliseconds timeout, Answer answer,
              LateAnswer late);

private:
    struct Batch;

    void ask(const std::shared_ptr<Batch> &batch, std::size_t index);
    void take(const Place &place, const Reading &reading);
    void finish(Batch &batch) const;

    Source m_source;
    /// For each place that is being asked: the batches that wait for it, and its number in them.
    std::map<Place, std::vector<std::pair<std::shared_ptr<Batch>, std::size_t>>> m_waiting;
    /// The figures that were read last, of the places that were asked for last.
    std::map<Place, VolumeFigures> m_last;
    QObject m_timers;
    BackgroundWork m_work; ///< destroyed first: nothing calls this object after that
};

} // namespace tessaly
