#pragma once

#include "platform/linux/bus/BusLink.hpp"
#include "platform/linux/volumes/UDisksVolumes.hpp"

#include <QDBusMessage>
#include <QLoggingCategory>
#include <QObject>
#include <QString>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaly {

/// What becomes of questions about volumes.
Q_DECLARE_LOGGING_CATEGORY(volumesLog)

/// The part of LinuxVolumeService that talks to UDisks2, the service for disks on the system bus.
/// The bus starts it when it is called.
///
/// Threads: one, with an event loop; it may be made on another one. It never blocks on the bus.
/// Answers: all come on this thread, some before the call returns. Those that have not come when
///          this is destroyed are dropped.
class UDisksClient final : public QObject {
    Q_OBJECT

public:
    enum class Result {
        done,
        unknown, ///< UDisks2 does not know the volume, or there is no UDisks2
        failed,  ///< it has not done it, or not all of it
    };
    struct Outcome {
        Result result = Result::unknown;
        std::string problem; ///< when it failed
    };
    enum class AfterUnmount { nothing, eject };

    /// Calls `changed` on this thread whenever UDisks2 says that something about devices, drives or
    /// what is mounted has changed. It says so once readVolumes() has found it. A bus that has not
    /// answered after `timeout` counts as none.
    UDisksClient(std::string busAddress, std::function<void()> changed,
                 std::chrono::milliseconds timeout);
    ~UDisksClient() override;
    Q_DISABLE_COPY_MOVE(UDisksClient)

    using VolumesAnswer = std::function<void(const std::optional<UDisksVolumes> &)>;
    using OutcomeAnswer = std::function<void(const Outcome &)>;

    /// Answers nothing when there is no UDisks2.
    void readVolumes(const VolumesAnswer &answer);

    /// Unmounts the volume that is mounted there, or else has that device number; then, if that is
    /// wanted, locks what it was encrypted in and has a removable drive eject the medium, where
    /// there are such. It may take as long as writing what is not yet on the disk.
    void unmount(const std::string &mountPoint, std::uint64_t device, AfterUnmount afterUnmount,
                 const OutcomeAnswer &answer);

private slots:
    void takeObjectsSignal(const QDBusMessage &signal);
    void takePropertiesSignal(const QDBusMessage &signal);
    void takeOwnerSignal(const QDBusMessage &signal);

private:
    struct Step {
        QString path;
        QString interface;
        QString method;
    };

    /// Calls `ready` once the bus is open, or with the reason why it cannot be opened.
    void withBus(std::function<void(const QString &problem)> ready);
    void listen();
    void askForObjects(const VolumesAnswer &answer);
    /// Does one step after the other, beginning with number `first`, up to one that fails.
    void doSteps(const std::vector<Step> &steps, std::size_t first, const OutcomeAnswer &answer);

    std::function<void()> m_changed;
    std::chrono::milliseconds m_timeout;
    BusLink m_link;
    std::vector<std::function<void(const QString &problem)>>
        m_waitingForBus; ///< to be called once it is open
};

} // namespace tessaly
