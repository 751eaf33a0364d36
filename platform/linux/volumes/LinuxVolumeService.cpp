#include "platform/linux/volumes/LinuxVolumeService.hpp"

#include "engine/tree/FilePath.hpp"
#include "engine/tree/PrintableText.hpp"
#include "platform/linux/process/ProbeProcess.hpp"
#include "platform/linux/volumes/LinuxVolumeEnumerator.hpp"
#include "platform/linux/volumes/UnmountPrograms.hpp"
#include "platform/linux/volumes/UserMounts.hpp"
#include "platform/linux/volumes/VolumeFacts.hpp"
#include "platform/linux/volumes/VolumeFilter.hpp"
#include "platform/linux/volumes/VolumeSpace.hpp"
#include "platform/linux/volumes/VolumeTypes.hpp"

#include <future>
#include <utility>

namespace tessaly {

namespace {

using Outcome = UDisksClient::Outcome;
using UDisksResult = UDisksClient::Result;
using AfterUnmount = UDisksClient::AfterUnmount;

/// Plugging in one disk changes the mounts, UDisks2's objects and their properties within moments.
constexpr std::chrono::milliseconds mergeTime(100);

// Paths of volumes that are not mounted start with this folder, which does not exist.
constexpr auto missingVolumes = "/Volumes/";
constexpr auto rootEntryPath = "/Volumes//";

void logNotUnmounted(const std::string &path, const std::string &reason)
{
    qCWarning(volumesLog).noquote()
        << "not unmounted:" << QString::fromStdString(tree::printableText(path)) << '-'
        << QString::fromStdString(tree::printableText(reason));
}

/// What UDisks2 does not know, the user may be allowed to unmount: what FUSE programs show, and
/// what fstab says. Waits for the outcome; an explanation when it is not unmounted.
std::optional<std::string> unmountAsUser(const scan::Mount &volume, FileSystemProbe &probe,
                                         std::chrono::milliseconds timeout)
{
    if (!isFuse(volume.type)) {
        return unmountByUser(volume.mountPoint);
    }
    auto problem = unmountFuse(volume.mountPoint);
    if (problem && !probe.answersWithin(timeout, volume.mountPoint)) {
        // Its program hangs, and the requests that it holds keep the volume busy, even those of
        // processes that were killed. One that answers is in use by others, and stays mounted.
        problem = detachFuse(volume.mountPoint);
    }
    return problem;
}

/// Why a volume stays, by what UDisks2 has answered.
std::optional<std::string> problemOf(const Outcome &outcome)
{
    switch (outcome.result) {
    case UDisksResult::done:
        return std::nullopt;
    case UDisksResult::unknown:
        return "UDisks2 is not there, or does not know it";
    case UDisksResult::failed:
        break;
    }
    return outcome.problem;
}

/// Where the entry with that path is mounted.
std::string mountPathOf(const std::string &path)
{
    return path == rootEntryPath ? std::string(scan::rootPath) : tree::cleanPath(path);
}

VolumeFiguresReader::Source systemFigures(std::shared_ptr<FileSystemProbe> probe)
{
    return [probe = std::move(probe)](const VolumeFiguresReader::Place &place) {
        return place.mayHang ? probe->spaceAt(place.path)
                             : VolumeFiguresReader::Reading(spaceAt(place.path));
    };
}

} // namespace

/// What readInformation() was asked.
struct LinuxVolumeService::Question {
    std::vector<std::string> paths;
    Answer answer;
    LateFigures late;
    std::vector<VolumeFiguresReader::Space> spaces;
    int missingCount = 2; ///< of the answers: the figures', and UDisks2's
};

/// A volume that is to be unmounted. Used on other threads, and after the service is destroyed.
struct LinuxVolumeService::UnmountRequest {
    std::string path; ///< as it was asked for
    scan::Mount volume;
    bool mayUser = false;      ///< unmount it without UDisks2
    bool isForUDisks = true;   ///< UDisks2 would take this mount and no other
    bool isMountedOnce = true; ///< and may be ejected
    std::shared_ptr<FileSystemProbe> probe;
    std::chrono::milliseconds timeout{};

    /// Our own questions to the volume would keep it busy.
    [[nodiscard]] FileSystemProbe::Quiet silence() const
    {
        return probe->silence(volume.mountPoint);
    }

    /// Does what UDisks2 could not or must not do. Waits; returns why the volume stays.
    [[nodiscard]] std::optional<std::string> finish(const Outcome &outcome) const
    {
        if (!isForUDisks) {
            return unmountThere(volume.mountPoint);
        }
        return outcome.result == UDisksResult::unknown && mayUser
                   ? unmountAsUser(volume, *probe, timeout)
                   : problemOf(outcome);
    }
};

LinuxVolumeService::LinuxVolumeService(const VolumeSources &sources,
                                       VolumeFiguresReader::Source figures,
                                       std::chrono::milliseconds timeout)
    : m_sources(sources), m_timeout(timeout),
      m_probe(std::make_shared<FileSystemProbe>(
          sources.probe.empty() ? ProbeProcess::programOfInstallation() : sources.probe)),
      m_list(sources), m_figures(figures ? std::move(figures) : systemFigures(m_probe)),
      m_client(
          sources.bus, [this, post = m_work.poster()] { post([this] { checkSoon(); }); }, timeout)
{
    m_merge.setSingleShot(true);
    m_merge.setInterval(mergeTime);
    QObject::connect(&m_merge, &QTimer::timeout, &m_merge,
                     [this] { askUDisks([this] { tellIfChanged(); }); });
}

LinuxVolumeService::~LinuxVolumeService()
{
    m_probe->stopAll();
}

std::unique_ptr<VolumeEnumerator> LinuxVolumeService::enumerator()
{
    m_toldEntries = m_list.entries(udisks());
    return std::make_unique<LinuxVolumeEnumerator>(m_toldEntries);
}

std::string LinuxVolumeService::pathOf(std::string_view name) const
{
    if (name == scan::rootPath) {
        return rootEntryPath;
    }
    return m_list.pathOf(name).value_or(missingVolumes + std::string(name));
}

void LinuxVolumeService::readInformation(std::vector<std::string> paths, Answer answer,
                                         LateFigures late)
{
    const auto question = std::make_shared<Question>();
    question->paths = std::move(paths);
    question->answer = std::move(answer);
    question->late = std::move(late);
    const auto oneHasCome = [this, question] {
        if (--question->missingCount == 0) {
            this->answer(*question);
        }
    };
    const VolumeFacts facts(m_sources);
    std::vector<VolumeFiguresReader::Place> places;
    for (const std::string &path : question->paths) {
        const std::string mountPath = mountPathOf(path);
        const scan::Mount *volume = facts.volumeOf(mountPath);
        places.push_back({mountPath, volume == nullptr ? 0 : volume->device,
                          volume == nullptr || !isOnLocalDisk(*volume)});
    }
    m_figures.read(
        places, m_timeout,
        [question, oneHasCome](std::vector<VolumeFiguresReader::Space> spaces) {
            question->spaces = std::move(spaces);
            oneHasCome();
        },
        [question](std::size_t index, const VolumeFigures &figures) {
            if (question->missingCount > 0) { // UDisks2 has not answered yet
                question->spaces[index] = {figures, false};
            } else if (question->late) {
                question->late(index, figures);
            }
        });
    askUDisks(oneHasCome);
}

void LinuxVolumeService::answer(const Question &question)
{
    const VolumeFacts facts(m_sources);
    std::vector<VolumeInformation> information;
    m_toldFacts.clear();
    for (std::size_t i = 0; i < question.paths.size(); ++i) {
        const std::string path = mountPathOf(question.paths[i]);
        information.push_back(facts.informationAbout(path, udisks()));
        m_toldFacts[path] = information.back();
        information.back().figures = question.spaces[i].figures;
        information.back().areFiguresOld = question.spaces[i].isOld;
    }
    question.answer(std::move(information));
}

void LinuxVolumeService::unmountAndEject(std::string_view path)
{
    const auto request = requestFor(path);
    if (!request) {
        return;
    }
    const auto report = [this, request = *request,
                         post = m_work.poster()](const std::optional<std::string> &problem) {
        if (problem) {
            post([this, request, problem] {
                logNotUnmounted(request.volume.mountPoint, *problem);
                tellRefused(request.path);
            });
        }
    };
    m_client.post([request = *request, report](UDisksClient &client) {
        // On the client's thread, since silence() may block for a moment.
        const auto finish = [request, report, quiet = request.silence()](const Outcome &outcome) {
            BackgroundWork::start(
                [request, report, quiet, outcome] { report(request.finish(outcome)); });
        };
        if (request.isForUDisks) {
            client.unmount(request.volume.mountPoint, request.volume.device,
                           request.isMountedOnce ? AfterUnmount::eject : AfterUnmount::nothing,
                           finish);
        } else {
            finish({});
        }
    });
}

void LinuxVolumeService::unmount(std::string_view path)
{
    const auto request = requestFor(path);
    if (!request) {
        return;
    }
    const auto tell = [this, path = request->path, post = m_work.poster()] {
        post([this, path] { tellRefused(path); });
    };
    const FileSystemProbe::Quiet quiet = request->silence();
    Outcome outcome;
    if (request->isForUDisks) {
        auto promise = std::make_shared<std::promise<Outcome>>();
        std::future<Outcome> outcomeToCome = promise->get_future();
        m_client.post(
            [volume = request->volume, promise = std::move(promise)](UDisksClient &client) {
                client.unmount(volume.mountPoint, volume.device, AfterUnmount::nothing,
                               [promise](const Outcome &its) { promise->set_value(its); });
            });
        // No member is used from here on: the service may be destroyed while this blocks.
        try {
            outcome = outcomeToCome.get();
        } catch (const std::future_error &) {
            return; // broken promise: the client was destroyed before it had an answer
        }
    }
    if (const auto problem = request->finish(outcome)) {
        logNotUnmounted(request->volume.mountPoint, *problem);
        tell();
    }
}

/// Nothing, and a refusal, for a path that is not to be unmounted.
std::optional<LinuxVolumeService::UnmountRequest>
LinuxVolumeService::requestFor(std::string_view path)
{
    const VolumeFacts facts(m_sources);
    const std::string mountPoint = tree::cleanPath(path);
    const scan::Mount *volume = facts.volumeOf(mountPoint);
    if (volume == nullptr || volume->mountPoint != mountPoint || mountPoint == scan::rootPath) {
        logNotUnmounted(mountPoint, mountPoint == scan::rootPath ? "the system is on it"
                                                                 : "no volume is mounted there");
        m_work.poster()([this, path = std::string(path)] { tellRefused(path); });
        return std::nullopt;
    }
    UnmountRequest request;
    request.path = path;
    request.volume = *volume;
    request.mayUser = isFuse(volume->type) || UserMounts(m_sources).mayUnmount(*volume);
    if (const auto mounts = facts.mountsOfDevice(*volume); !mounts.empty()) {
        // UDisks2 unmounts devices and not places: it takes what was mounted last.
        request.isForUDisks = mounts.back().id == volume->id;
        request.isMountedOnce = mounts.size() == 1;
    }
    request.probe = m_probe;
    request.timeout = m_timeout;
    return request;
}

void LinuxVolumeService::tellRefused(const std::string &path) const
{
    if (const auto refused = m_refused) { // a copy, since the listener may replace itself
        refused(path);
    }
}

void LinuxVolumeService::setRefusalListener(std::function<void(const std::string &path)> refused)
{
    m_refused = std::move(refused);
}

void LinuxVolumeService::askUDisks(std::function<void()> then)
{
    const auto finish = [then = std::make_shared<std::function<void()>>(std::move(then))] {
        if (*then) {
            std::exchange(*then, nullptr)();
        }
    };
    // Whichever comes first calls `then`: the answer or the timer.
    QTimer::singleShot(m_timeout, Qt::PreciseTimer, &m_timers, finish);
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
    m_client.post([take](UDisksClient &client) { client.readVolumes(take); });
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
        askUDisks([] {}); // from then on the client hears its signals
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
    const auto changed = m_changed; // a copy, since the listener may replace itself
    changed();
}

/// Whether the answers to the last question would be others now.
bool LinuxVolumeService::hasOtherFacts() const
{
    const VolumeFacts facts(m_sources);
    for (const auto &[path, told] : m_toldFacts) {
        if (facts.informationAbout(path, udisks()) != told) {
            return true;
        }
    }
    return false;
}

} // namespace tessaly
