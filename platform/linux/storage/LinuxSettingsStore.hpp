#pragma once

#include "engine/archive/FileCalls.hpp"
#include "engine/archive/PropertyList.hpp"
#include "platform/SettingsStore.hpp"
#include "platform/linux/storage/SettingsFile.hpp"

#include <QtGlobal>

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace tessaly {

/// The settings in a file of the user's: $XDG_CONFIG_HOME/tessaly/settings.plist, by default
/// ~/.config/tessaly/settings.plist, a binary property list whose top is a dictionary.
///
/// Several processes may use the file at once. flush() holds a lock while it reads what the file
/// holds now, makes this process's changes to it, no others, and replaces the file as a whole; what
/// came of it is what this process sees from then on. Values of types that are not ours stay as
/// they are. The lock is tried for 5 seconds. When its holder was stopped and keeps it longer,
/// flush() fails; from then on it tries only once each time, until it gets the lock.
///
/// - Without pending changes flush() only reads the file, and succeeds whatever it finds.
/// - A file that holds no settings is set aside under another name, with a warning in the log; it
///   counts as missing.
/// - When there is no file, what this process knows already stays and goes into the next one.
/// - A file that cannot be read is left alone: flush() fails while there are pending changes.
/// - What fails again and again for the same reason is logged once.
/// - Whether a default is needed is decided while the lock is held, by what the file holds then.
///
/// The destructor flushes the last changes.
///
/// Threads: any. Only flush() blocks on the disk; reading and changing values never does.
class LinuxSettingsStore final : public SettingsStore {
public:
    static constexpr std::chrono::milliseconds defaultTimeout = std::chrono::seconds(5);

    [[nodiscard]] static std::string defaultPath();

    /// Reads the file. `path` is bytes as the system takes them, `calls` must outlive the store,
    /// and `timeout` is how long it waits for the lock.
    explicit LinuxSettingsStore(std::string path = defaultPath(),
                                archive::FileCalls &calls = archive::FileCalls::system(),
                                std::chrono::milliseconds timeout = defaultTimeout);
    ~LinuxSettingsStore() override;
    Q_DISABLE_COPY_MOVE(LinuxSettingsStore)

    [[nodiscard]] bool hasKey(std::string_view key) const override;
    [[nodiscard]] std::int64_t integer(std::string_view key) const override;
    [[nodiscard]] std::optional<std::string> text(std::string_view key) const override;
    [[nodiscard]] std::optional<Data> data(std::string_view key) const override;

    void setInteger(std::string_view key, std::int64_t value) override;
    void setDefault(std::string_view key, std::int64_t value) override;
    void setText(std::string_view key, std::string_view value) override;
    void setData(std::string_view key, std::span<const std::byte> value) override;
    void remove(std::string_view key) override;

    bool flush() override;

private:
    struct Change {
        std::optional<archive::PlistValue> value; ///< nothing: the key is removed
        std::uint64_t number = 0;                 ///< tells it from a later change of the same key
        bool isDefault = false;                   ///< gives way to a stored value
    };
    using Changes = std::map<std::string, Change, std::less<>>;

    [[nodiscard]] const archive::PlistValue *find(std::string_view key) const;
    template <typename Type>
    [[nodiscard]] const Type *findAs(std::string_view key) const;
    Change &newChange(std::string_view key);

    [[nodiscard]] Changes pendingChanges() const;
    [[nodiscard]] archive::PlistDictionary known() const;
    void adopt(archive::PlistDictionary stored, const Changes &flushed);
    void warn(const archive::ArchiveError &error);
    void readStored();
    [[nodiscard]] SettingsFile::Result<archive::Done> store(const Changes &changes);
    [[nodiscard]] SettingsFile::Result<SettingsFile::Content> readOrSetAside();

    std::mutex m_fileMutex;    ///< taken before m_mutex
    SettingsFile m_file;       ///< guarded by m_fileMutex
    std::string m_lastWarning; ///< guarded by m_fileMutex; empty after a success

    mutable std::mutex m_mutex;        ///< never held while the disk is used
    archive::PlistDictionary m_stored; ///< guarded by m_mutex
    Changes m_changes;                 ///< guarded by m_mutex
    std::uint64_t m_changeCount = 0;   ///< guarded by m_mutex
};

} // namespace tessaly
