#include "platform/linux/volumes/VolumeFiguresReader.hpp"

#include <QTimer>

#include <algorithm>

namespace tessaly {

/// The places of one read(). Held by the timer and by m_waiting, and used on the one thread alone.
struct VolumeFiguresReader::Batch {
    std::vector<Place> places;
    std::vector<Space> spaces;
    std::size_t missingCount = 0;
    Answer answer;   ///< empty once it has been called
    LateAnswer late; ///< empty when another question came after this one
};

VolumeFiguresReader::VolumeFiguresReader(Source source) : m_source(std::move(source)) {}

void VolumeFiguresReader::read(const std::vector<Place> &places, std::chrono::milliseconds timeout,
                               Answer answer, LateAnswer late)
{
    // Batches that have answered drop out; the threads of those that have not are still needed.
    for (auto &[place, waiting] : m_waiting) {
        std::erase_if(waiting, [](const auto &waiter) { return !waiter.first->answer; });
        for (const auto &[batch, index] : waiting) {
            batch->late = nullptr;
        }
    }
    std::erase_if(m_last, [&](const auto &last) {
        return std::find(places.begin(), places.end(), last.first) == places.end();
    });
    const auto batch = std::make_shared<Batch>();
    batch->places = places;
    batch->spaces.resize(places.size());
    batch->missingCount = places.size();
    batch->answer = std::move(answer);
    batch->late = std::move(late);
    QTimer::singleShot(places.empty() ? std::chrono::milliseconds(0) : timeout, Qt::PreciseTimer,
                       &m_timers, [this, batch] { finish(*batch); });
    for (std::size_t i = 0; i < places.size(); ++i) {
        ask(batch, i);
    }
}

void VolumeFiguresReader::ask(const std::shared_ptr<Batch> &batch, std::size_t index)
{
    const Place place = batch->places[index];
    // A thread that hangs in statvfs() cannot be ended. With one for each place, asking again and
    // again does not pile them up.
    const bool isUnderWay = m_waiting.contains(place);
    m_waiting[place].emplace_back(batch, index);
    if (isUnderWay) {
        return;
    }
    const auto post = m_work.poster();
    const bool isStarted = BackgroundWork::tryStart([this, source = m_source, place, post] {
        post([this, place, reading = source(place)] { take(place, reading); });
    });
    if (!isStarted) {
        post([this, place] { take(place, Figures()); });
    }
}

void VolumeFiguresReader::take(const Place &place, const Reading &reading)
{
    const auto waiting = m_waiting.extract(place);
    if (!reading) {
        return; // the batches that wait for it get the last figures after their timeout
    }
    const Figures &figures = *reading;
    if (figures && place.device != 0) {
        m_last.insert_or_assign(place, *figures);
    }
    for (const auto &[batch, index] : waiting.mapped()) {
        // A batch that has answered already takes this as a late one.
        if (batch->answer) {
            batch->spaces[index].figures = figures;
            if (--batch->missingCount == 0) {
                finish(*batch);
            }
        } else if (figures && batch->late) {
            batch->late(index, *figures);
        }
    }
}

void VolumeFiguresReader::finish(Batch &batch) const
{
    if (!batch.answer) {
        return;
    }
    for (std::size_t i = 0; i < batch.places.size(); ++i) {
        const auto last = m_last.find(batch.places[i]);
        if (!batch.spaces[i].figures && last != m_last.end()) {
            batch.spaces[i] = {last->second, true};
        }
    }
    std::exchange(batch.answer, nullptr)(std::move(batch.spaces));
}

} // namespace tessaly
