#include "platform/linux/VolumeFiguresReader.hpp"

#include <QTimer>

#include <algorithm>

#include <sys/statvfs.h>

namespace tessaly {

namespace {

using Blocks = std::uint64_t;

/// As bytes; the most there can be where a file system claims more.
std::uint64_t bytesIn(Blocks count, std::uint64_t blockSize)
{
    std::uint64_t byteCount = 0;
    return __builtin_mul_overflow(count, blockSize, &byteCount) ? UINT64_MAX : byteCount;
}

/// Some file systems say less than none is available: the user has filled what is reserved.
Blocks availableBlocks(const struct statvfs &status)
{
    const bool isBelowZero = static_cast<std::int64_t>(status.f_bavail) < 0;
    return isBelowZero ? 0 : std::min<Blocks>(status.f_bavail, status.f_blocks);
}

} // namespace

/// What was asked for at once. Its timer owns it.
struct VolumeFiguresReader::Batch {
    std::vector<Figures> figures;
    std::size_t missingCount = 0;
    Answer answer; ///< empty once it has been called

    void finish()
    {
        if (answer) {
            std::exchange(answer, nullptr)(std::move(figures));
        }
    }
};

VolumeFiguresReader::VolumeFiguresReader(Source source) : m_source(std::move(source)) {}

void VolumeFiguresReader::read(const std::vector<Place> &places, std::chrono::milliseconds patience,
                               Answer answer)
{
    const auto batch = std::make_shared<Batch>();
    batch->figures.resize(places.size());
    batch->missingCount = places.size();
    batch->answer = std::move(answer);
    QTimer::singleShot(places.empty() ? std::chrono::milliseconds(0) : patience, Qt::PreciseTimer,
                       &m_timers, [batch] { batch->finish(); });
    for (std::size_t i = 0; i < places.size(); ++i) {
        ask(places[i], batch, i);
    }
}

void VolumeFiguresReader::ask(const Place &place, const std::shared_ptr<Batch> &batch,
                              std::size_t index)
{
    const bool isUnderWay = m_waiting.contains(place);
    auto &waiting = m_waiting[place];
    std::erase_if(waiting, [](const auto &waiter) { return waiter.first.expired(); });
    waiting.emplace_back(batch, index);
    if (isUnderWay) {
        return;
    }
    const auto post = m_work.poster();
    const bool isStarted = BackgroundWork::tryStart([this, source = m_source, place, post] {
        post([this, place, figures = source(place.path)] { take(place, figures); });
    });
    if (!isStarted) {
        post([this, place] { take(place, std::nullopt); });
    }
}

void VolumeFiguresReader::take(const Place &place, const Figures &figures)
{
    auto waiting = m_waiting.extract(place);
    for (const auto &[waiter, index] : waiting.mapped()) {
        if (const auto batch = waiter.lock(); batch && batch->answer) {
            batch->figures[index] = figures;
            if (--batch->missingCount == 0) {
                batch->finish();
            }
        }
    }
}

VolumeFiguresReader::Figures VolumeFiguresReader::figuresAt(const std::string &path)
{
    struct statvfs status = {};
    if (statvfs(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return VolumeFigures{bytesIn(status.f_blocks, status.f_frsize),
                         bytesIn(availableBlocks(status), status.f_frsize)};
}

} // namespace tessaly
