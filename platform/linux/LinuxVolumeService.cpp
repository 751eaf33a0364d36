#include "platform/linux/LinuxVolumeService.hpp"

#include "engine/PrintableText.hpp"
#include "platform/linux/CleanPath.hpp"
#include "platform/linux/LinuxVolumeEnumerator.hpp"
#include "platform/linux/UnmountPrograms.hpp"
#include "platform/linux/UserMounts.hpp"
#include "platform/linux/VolumeFacts.hpp"
#include "platform/linux/VolumeTypes.hpp"

#include <QMetaObject>

#include <future>
#include <utility>

namespace tessaly {

namespace {

using Outcome = UDisksClient::Outcome;
using UDisksResult = UDisksClient::Result;
using AfterUnmount = UDisksClient::AfterUnmount;

/// Changes within such a time are one.
constexpr std::chrono::milliseconds mergeTime(100);

/// Paths of volumes that are not there are in here, where nothing is.
constexpr auto missingVolumes = "/Volumes/";

void logNotUnmounted(const std::string &path, const std::string &reason)
{
    qCWarning(volumesLog).noquote()
        << "not unmounted:" << QString::fromStdString(printableText(path)) << '-'
        << QString::fromStdString(printableText(reason));
}

/// What UDisks2 does not know, the user may be allowed to unmount: what FUSE programs show, and
/// what fstab says. Waits for the outcome; an explanation when it is not unmounted.
std::optional<std::string> unmountAsUser(const Mount &volume)
{
    return isFuse(volume.type) ? unmountFuse(volume.mountPoint) : unmountByUser(volume.mountPoint);
}

/// Logs an outcome that is not what was asked for.
void logOutcome(const Mount &volume, const Outcome &outcome)
{
    if (outcome.result == UDisksResult::unknown) {
        logNotUnmounted(volume.mountPoint, "UDisks2 is not there, or does not know it");
    } else if (outcome.result == UDisksResult::failed) {
        logNotUnmounted(volume.mountPoint, outcome.problem);
    }
}

} // namespace

/// What readInformation() was asked.
struct LinuxVolumeService::Question {
    std::vector<std::string> paths;
    Answer answer;
    std::vector<VolumeFiguresReader::Figures> figures;
    int missingCount = 2; ///< the figures, and UDisks2
};

LinuxVolumeService::LinuxVolumeService(const VolumeSources &sources,
                                       VolumeFiguresReader::Source figures,
                                       std::chrono::milliseconds patience)
    : m_sources(sources), m_patience(patience), m_list(sources), m_figures(std::move(figures))
{
    m_merge.setSingleShot(true);
    m_merge.setInterval(mergeTime);
    QObject::connect(&m_merge, &QTimer::timeout, &m_merge,
                     [this] { askUDisks([this] { tellIfChanged(); }); });
    m_client = new UDisksClient(
        m_sources.bus, [this, post = m_work.poster()] { post([this] { checkSoon(); }); },
        m_patience);
    m_client->moveToThread(&m_thread);
    QObject::connect(&m_thread, &QThread::finished, m_client, &QObject::deleteLater);
    m_thread.start();
}

LinuxVolumeService::~LinuxVolumeService()
{
    m_thread.quit();
    m_thread.wait(); // not for long: nothing that the client does waits for somebody else
}

std::unique_ptr<VolumeEnumerator> LinuxVolumeService::enumerator()
{
    m_toldEntries = m_list.entries(udisks());
    return std::make_unique<LinuxVolumeEnumerator>(m_toldEntries);
}

std::string LinuxVolumeService::pathOf(std::string_view name) const
{
    return m_list.pathOf(name).value_or(missingVolumes + std::string(name));
}

void LinuxVolumeService::readInformation(std::vector<std::string> paths, Answer answer)
{
    const auto question = std::make_shared<Question>();
    question->paths = std::move(paths);
    question->answer = std::move(answer);
    const auto oneHasCome = [this, question] {
        if (--question->missingCount == 0) {
            this->answer(*question);
        }
    };
    const VolumeFacts facts(m_sources);
    std::vector<VolumeFiguresReader::Place> places;
    for (const std::string &path : question->paths) {
        const Mount *volume = facts.volumeOf(cleanPath(path));
        places.push_back({path, volume == nullptr ? 0 : volume->device});
    }
    m_figures.read(places, m_patience,
                   [question, oneHasCome](std::vector<VolumeFiguresReader::Figures> figures) {
                       question->figures = std::move(figures);
                       oneHasCome();
                   });
    askUDisks(oneHasCome);
}

void LinuxVolumeService::answer(const Question &question)
{
    const VolumeFacts facts(m_sources);
    std::vector<VolumeInformation> information;
    m_toldFacts.clear();
    for (std::size_t i = 0; i < question.paths.size(); ++i) {
        const std::string &path = question.paths[i];
        information.push_back(facts.informationAbout(cleanPath(path), udisks()));
        m_toldFacts[path] = information.back();
        information.back().figures = question.figures[i];
    }
    question.answer(std::move(information));
}

void LinuxVolumeService::unmountAndEject(std::string_view path)
{
    const std::optional<Mount> volume = volumeToUnmount(cleanPath(path));
    if (!volume) {
        return;
    }
    const auto finish = [volume = *volume, byUser = mayUserUnmount(*volume),
                         post = m_work.poster()](const Outcome &outcome) {
        if (outcome.result != UDisksResult::unknown || !byUser) {
            post([volume, outcome] { logOutcome(volume, outcome); });
            return;
        }
        BackgroundWork::start([volume, post] {
            if (const auto problem = unmountAsUser(volume)) {
                post([volume, problem] { logNotUnmounted(volume.mountPoint, *problem); });
            }
        });
    };
    QMetaObject::invokeMethod(
        m_client,
        [client = m_client, volume = *volume, finish] {
            client->unmount(volume.mountPoint, volume.device, AfterUnmount::eject, finish);
        },
        Qt::QueuedConnection);
}

void LinuxVolumeService::unmount(std::string_view path)
{
    const std::optional<Mount> volume = volumeToUnmount(cleanPath(path));
    if (!volume) {
        return;
    }
    const bool byUser = mayUserUnmount(*volume);
    auto promise = std::make_shared<std::promise<Outcome>>();
    std::future<Outcome> outcomeToCome = promise->get_future();
    QMetaObject::invokeMethod(
        m_client,
        [client = m_client, volume = *volume, promise = std::move(promise)] {
            client->unmount(volume.mountPoint, volume.device, AfterUnmount::nothing,
                            [promise](const Outcome &outcome) { promise->set_value(outcome); });
        },
        Qt::QueuedConnection);
    // From here on nothing of this object is used, as it may go meanwhile.
    Outcome outcome;
    try {
        outcome = outcomeToCome.get();
    } catch (const std::future_error &) {
        return; // it has gone, and its promise with it
    }
    if (outcome.result != UDisksResult::unknown || !byUser) {
        logOutcome(*volume, outcome);
    } else if (const auto problem = unmountAsUser(*volume)) {
        logNotUnmounted(volume->mountPoint, *problem);
    }
}

bool LinuxVolumeService::mayUserUnmount(const Mount &volume) const
{
    return isFuse(volume.type) || UserMounts(m_sources).mayUnmount(volume);
}

/// Nothing, and a line in the log, for a path that is not to be unmounted.
std::optional<Mount> LinuxVolumeService::volumeToUnmount(const std::string &path) const
{
    const VolumeFacts facts(m_sources);
    const Mount *volume = facts.volumeOf(path);
    if (volume == nullptr || volume->mountPoint != path || path == "/") {
        logNotUnmounted(path, path == "/" ? "the system is on it" : "no volume is mounted there");
        return std::nullopt;
    }
    return *volume;
}

void LinuxVolumeService::askUDisks(std::function<void()> then)
{
    const auto finish = [then = std::make_shared<std::function<void()>>(std::move(then))] {
        if (*then) {
            std::exchange(*then, nullptr)();
        }
    };
    QTimer::singleShot(m_patience, Qt::PreciseTimer, &m_timers, finish);
    const auto take = [this, finish,
                       post = m_work.poster()](const std::optional<UDisksVolumes> &volumes) {
        post([this, finish, volumes] {
            const bool isNews = volumes != m_udisksVolumes;
            m_udisksVolumes = volumes;
            finish();
            if (isNews) {
                tellIfChanged();
            }
        });
    };
    QMetaObject::invokeMethod(
        m_client, [client = m_client, take] { client->readVolumes(take); }, Qt::QueuedConnection);
}

const UDisksVolumes *LinuxVolumeService::udisks() const
{
    return m_udisksVolumes ? &*m_udisksVolumes : nullptr;
}

void LinuxVolumeService::setChangeListener(std::function<void()> changed)
{
    m_changed = std::move(changed);
    if (!m_watch) {
        m_toldEntries = m_list.entries(udisks());
        m_watch = std::make_unique<MountWatch>(m_sources.mountInfo, [this] { checkSoon(); });
        askUDisks([] {}); // from then on it says what changes
    }
}

void LinuxVolumeService::checkSoon()
{
    if (!m_merge.isActive()) {
        m_merge.start();
    }
}

void LinuxVolumeService::tellIfChanged()
{
    std::vector<VolumeList::Entry> entries = m_list.entries(udisks());
    if (!m_changed || (entries == m_toldEntries && !hasOtherFacts())) {
        return;
    }
    m_toldEntries = std::move(entries);
    m_toldFacts.clear();
    const auto changed = m_changed; // it may set another one
    changed();
}

/// Whether one would be told otherwise about the volumes that were asked for last.
bool LinuxVolumeService::hasOtherFacts() const
{
    const VolumeFacts facts(m_sources);
    for (const auto &[path, told] : m_toldFacts) {
        if (facts.informationAbout(cleanPath(path), udisks()) != told) {
            return true;
        }
    }
    return false;
}

} // namespace tessaly
