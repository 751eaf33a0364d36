#pragma once

#include "platform/VolumeService.hpp"
#include "platform/background/BackgroundWork.hpp"
#include "platform/background/ServiceThread.hpp"
#include "platform/linux/process/FileSystemProbe.hpp"
#include "platform/linux/volumes/MountWatch.hpp"
#include "platform/linux/volumes/UDisksClient.hpp"
#include "platform/linux/volumes/UDisksVolumes.hpp"
#include "platform/linux/volumes/VolumeFiguresReader.hpp"
#include "platform/linux/volumes/VolumeList.hpp"
#include "platform/linux/volumes/VolumeSources.hpp"

#include <QObject>
#include <QTimer>

#include <chrono>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessaly {

/// The mounted file systems, by the kernel's list of mounts and, where it is there, by UDisks2.
///
/// Entries:  volumesAmong() says which there are, VolumeNames what they are called. What has been
///           unmounted has the path "/Volumes/NAME", where nothing is. "/" has "/Volumes//", by
///           which it can be asked about but not unmounted.
/// Figures:  free is what the user may still fill, without what is reserved for the system.
/// Blocking: only unmount() blocks, on volumes, the bus and services. Volumes that are not on a
///           disk of this computer are asked by child processes (FileSystemProbe), which are killed
///           before the volume is unmounted.
/// Unmount:  UDisks2 unmounts the volumes that it knows; FUSE's or the system's programs unmount
///           what users may. Of a device that is mounted in several places only the mount at the
///           path is unmounted, and nothing is ejected. If another one was mounted after it,
///           "umount" is used, which refuses everybody but root and those whom fstab lets unmount
///           there: then all of them stay, and the refusal is reported at once. A FUSE volume whose
///           program does not answer is detached ("lazy unmount").
/// Requires: a QCoreApplication and its event loop.
/// Errors:   go to the log "tessaly.platform.volumes".
/// End:      answers that have not come are dropped. An unmount() that is running returns.
class LinuxVolumeService final : public VolumeService {
public:
    static constexpr std::chrono::milliseconds usualTimeout = std::chrono::seconds(2);

    /// `figures` asks a volume for its space; empty for the system's own answer. `timeout`: of a
    /// volume or a service that does not answer.
    explicit LinuxVolumeService(const VolumeSources &sources = {},
                                VolumeFiguresReader::Source figures = {},
                                std::chrono::milliseconds timeout = usualTimeout);
    ~LinuxVolumeService() override;
    Q_DISABLE_COPY_MOVE(LinuxVolumeService)

    [[nodiscard]] std::unique_ptr<VolumeEnumerator> enumerator() override;
    [[nodiscard]] std::string pathOf(std::string_view name) const override;
    void readInformation(std::vector<std::string> paths, Answer answer, LateFigures late) override;
    void unmountAndEject(std::string_view path) override;
    void unmount(std::string_view path) override;
    void setRefusalListener(std::function<void(const std::string &path)> refused) override;
    void setChangeListener(std::function<void()> changed) override;

private:
    struct Question;
    struct UnmountRequest;
    /// Calls `then` once UDisks2 has answered, or after the timeout.
    void askUDisks(std::function<void()> then);
    [[nodiscard]] const UDisksVolumes *udisks() const;

    void answer(const Question &question);
    [[nodiscard]] std::optional<UnmountRequest> requestFor(std::string_view path);
    void tellRefused(const std::string &path) const;
    void checkSoon();
    void tellIfChanged();
    [[nodiscard]] bool hasOtherFacts() const;

    VolumeSources m_sources;
    std::chrono::milliseconds m_timeout;
    std::shared_ptr<FileSystemProbe> m_probe; ///< shared with the threads that use it
    VolumeList m_list;
    std::optional<UDisksVolumes> m_udisksVolumes; ///< its last answer; nothing without UDisks2

    // What the change listener was told last, or has asked for since.
    std::vector<VolumeList::Entry> m_toldEntries;
    std::map<std::string, VolumeInformation> m_toldFacts; ///< by path, without figures

    std::function<void(const std::string &path)> m_refused;
    std::function<void()> m_changed;
    std::unique_ptr<MountWatch> m_watch;
    QTimer m_merge; ///< runs while changes are collected, to be reported as one
    QObject m_timers;
    VolumeFiguresReader m_figures;
    BackgroundWork m_work; ///< before m_client, which posts by it
    ServiceThread<UDisksClient> m_client;
};

} // namespace tessaly
