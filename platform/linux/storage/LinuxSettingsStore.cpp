#include "platform/linux/storage/LinuxSettingsStore.hpp"

#include "engine/archive/AtomicFile.hpp"
#include "engine/tree/PrintableText.hpp"
#include "platform/linux/storage/XdgFolders.hpp"

#include <QLoggingCategory>

#include <cmath>
#include <limits>
#include <new>
#include <utility>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(settingsLog, "tessaly.settings")

/// Without the fraction, and the nearest one when it is past an end; 0 when it is not a number.
std::int64_t integerOf(double real) noexcept
{
    // The largest integer, 2^63 − 1, is not a double, but 2^63 is. Converting a double out of range
    // is undefined, so the ends are checked first.
    constexpr double pastLast = 0x1p63;
    if (std::isnan(real)) {
        return 0;
    }
    if (real >= pastLast) {
        return std::numeric_limits<std::int64_t>::max();
    }
    return real < -pastLast ? std::numeric_limits<std::int64_t>::min()
                            : static_cast<std::int64_t>(real);
}

/// As SettingsStore::integer() reads it.
std::int64_t integerOf(const archive::PlistValue &value) noexcept
{
    if (const auto *number = value.as<std::int64_t>()) {
        return *number;
    }
    // A value only has this type if it does not fit into the signed one.
    if (value.as<std::uint64_t>() != nullptr) { // one past the end of the others
        return std::numeric_limits<std::int64_t>::max();
    }
    if (const auto *real = value.as<double>()) {
        return integerOf(*real);
    }
    const auto *boolean = value.as<bool>();
    return boolean != nullptr && *boolean ? 1 : 0;
}

} // namespace

std::string LinuxSettingsStore::defaultPath()
{
    return XdgFolders::config() + "/tessaly/settings.plist";
}

LinuxSettingsStore::LinuxSettingsStore(std::string path, archive::FileCalls &calls,
                                       std::chrono::milliseconds timeout)
    : m_file(std::move(path), calls, timeout)
{
    // Temporary files of instances that were killed while they wrote. Those of running ones are
    // locked, and stay.
    archive::AtomicFile::removeLeftovers(m_file.folderOfFile(), calls);
    const std::lock_guard lock(m_fileMutex);
    readStored();
}

LinuxSettingsStore::~LinuxSettingsStore()
{
    // Without changes flush() would only read the file. No lock is needed: no other thread may use
    // an object that is being destroyed.
    if (!m_changes.empty()) {
        LinuxSettingsStore::flush(); // by name: no virtual call in a destructor
    }
}

bool LinuxSettingsStore::hasKey(std::string_view key) const
{
    const std::lock_guard lock(m_mutex);
    return find(key) != nullptr;
}

std::int64_t LinuxSettingsStore::integer(std::string_view key) const
{
    const std::lock_guard lock(m_mutex);
    const archive::PlistValue *value = find(key);
    return value != nullptr ? integerOf(*value) : 0;
}

std::optional<std::string> LinuxSettingsStore::text(std::string_view key) const
{
    const std::lock_guard lock(m_mutex);
    const auto *text = findAs<std::string>(key);
    return text != nullptr ? std::optional(*text) : std::nullopt;
}

std::optional<SettingsStore::Data> LinuxSettingsStore::data(std::string_view key) const
{
    const std::lock_guard lock(m_mutex);
    const auto *data = findAs<archive::PlistData>(key);
    return data != nullptr ? std::optional(*data) : std::nullopt;
}

void LinuxSettingsStore::setInteger(std::string_view key, std::int64_t value)
{
    const std::lock_guard lock(m_mutex);
    newChange(key).value.emplace(value);
}

void LinuxSettingsStore::setDefault(std::string_view key, std::int64_t value)
{
    const std::lock_guard lock(m_mutex);
    // Any value that is visible counts, also one of another type: the user may have stored it with
    // a later version.
    if (find(key) != nullptr) {
        return;
    }
    const bool isRemoved = m_changes.contains(key); // so the value that is stored does not count
    Change &change = newChange(key);
    change.value.emplace(value);
    // An explicit removal came before, so this value replaces what is stored, and does not give way
    // to it.
    change.isDefault = !isRemoved;
}

void LinuxSettingsStore::setText(std::string_view key, std::string_view value)
{
    // Copied before the lock is taken, as in setData(): readers on other threads wait less.
    std::string text(value);
    const std::lock_guard lock(m_mutex);
    newChange(key).value.emplace(std::move(text));
}

void LinuxSettingsStore::setData(std::string_view key, std::span<const std::byte> value)
{
    archive::PlistData data(value.begin(), value.end());
    const std::lock_guard lock(m_mutex);
    newChange(key).value.emplace(std::move(data));
}

void LinuxSettingsStore::remove(std::string_view key)
{
    const std::lock_guard lock(m_mutex);
    // Removing what is not there is not a change, and flush() would rewrite the file for it.
    if (find(key) != nullptr) {
        newChange(key);
    }
}

bool LinuxSettingsStore::flush()
{
    const std::lock_guard lock(m_fileMutex);
    // Nothing may escape: the destructor calls this, and an exception there ends the program.
    try {
        const Changes changes = pendingChanges();
        if (changes.empty()) {
            readStored();
            return true;
        }
        // A copy: other threads may change values while the disk is used.
        const auto stored = store(changes);
        if (!stored) {
            warn(stored.error());
            return false;
        }
        // So that the same failure is logged again if it comes back after a success.
        m_lastWarning.clear();
        return true;
    } catch (const std::bad_alloc &) {
        qCWarning(settingsLog, "not enough memory to store the settings");
        return false;
    }
}

/// The value that this process sees; null when there is none. Requires: m_mutex is held, as long as
/// the value is used.
const archive::PlistValue *LinuxSettingsStore::find(std::string_view key) const
{
    // A pending change hides what is stored, except for a default, which only fills a gap.
    const auto stored = m_stored.find(key);
    const auto change = m_changes.find(key);
    if (change != m_changes.end() && !(change->second.isDefault && stored != m_stored.end())) {
        return change->second.value ? &*change->second.value : nullptr;
    }
    return stored != m_stored.end() ? &stored->second : nullptr;
}

template <typename Type>
const Type *LinuxSettingsStore::findAs(std::string_view key) const
{
    const archive::PlistValue *value = find(key);
    return value != nullptr ? value->as<Type>() : nullptr;
}

/// The pending change of the key: that it is removed, unless a value is put in. Requires: m_mutex
/// is held, as long as the change is used.
LinuxSettingsStore::Change &LinuxSettingsStore::newChange(std::string_view key)
{
    Change &change = m_changes[std::string(key)];
    change.value.reset();
    change.isDefault = false;
    // A new number also for the same value: a flush that is under way must not take this change for
    // the one that it has just stored.
    change.number = ++m_changeCount;
    return change;
}

LinuxSettingsStore::Changes LinuxSettingsStore::pendingChanges() const
{
    const std::lock_guard lock(m_mutex);
    return m_changes;
}

/// What `stored` holds is on disk now, the changes `flushed` among it.
void LinuxSettingsStore::adopt(archive::PlistDictionary stored, const Changes &flushed)
{
    const std::lock_guard lock(m_mutex);
    // Swapped and not assigned: the old values are destroyed with the argument, after the lock is
    // released.
    m_stored.swap(stored);
    for (const auto &[key, change] : flushed) {
        // Always found: changes are only removed here, and m_fileMutex keeps two flushes apart.
        const auto pending = m_changes.find(key);
        if (pending->second.number == change.number) { // else it was changed again meanwhile
            m_changes.erase(pending);
        }
    }
}

/// Logs what keeps the settings from being read or stored: once until it changes, since every
/// change is flushed. Requires: m_fileMutex is held.
void LinuxSettingsStore::warn(const archive::ArchiveError &error)
{
    std::string text = error.text();
    if (text != m_lastWarning) {
        qCWarning(settingsLog, "%s", text.c_str());
        m_lastWarning = std::move(text);
    }
}

/// Adopts what the file holds. Requires: m_fileMutex is held.
void LinuxSettingsStore::readStored()
{
    auto content = m_file.read();
    if (!content && SettingsFile::isDamage(content.error())) {
        // Without the lock another process could have put a good file in its place by now.
        const auto lock = m_file.lock();
        content = lock ? readOrSetAside() : lock.error();
    }
    if (!content) {
        warn(content.error());
        return;
    }
    m_lastWarning.clear();
    // Without a file the values known so far stay: it may have been deleted by mistake, and the
    // next flush writes them again.
    if (content.value()) {
        adopt(std::move(*content.value()), {});
    }
}

/// Merges the changes into the file. Requires: m_fileMutex is held.
SettingsFile::Result<archive::Done> LinuxSettingsStore::store(const Changes &changes)
{
    const auto lock = m_file.lock();
    if (!lock) {
        return lock.error();
    }
    auto content = readOrSetAside();
    if (!content) {
        return content.error();
    }
    // When the file was deleted, what this process knows is the best copy left.
    archive::PlistValue top(content.value() ? std::move(*content.value()) : known());
    // Into what the file holds now, so that no change of another process is lost.
    auto &merged = *top.as<archive::PlistDictionary>();
    for (const auto &[key, change] : changes) {
        // Decided only now, under the lock: another instance may have stored a value meanwhile.
        if (change.isDefault) {
            merged.try_emplace(key, *change.value);
        } else if (change.value) {
            merged.insert_or_assign(key, *change.value);
        } else {
            merged.erase(key);
        }
    }
    if (auto written = m_file.write(top); !written) {
        return written;
    }
    // Only once the file is on disk. After a failure the changes stay pending, for the next flush.
    adopt(std::move(merged), changes);
    return archive::Done{};
}

archive::PlistDictionary LinuxSettingsStore::known() const
{
    const std::lock_guard lock(m_mutex);
    return m_stored;
}

/// What the file holds; nothing when there is none or none any more, because it was damaged.
/// Requires: m_fileMutex and the file's lock are held.
SettingsFile::Result<SettingsFile::Content> LinuxSettingsStore::readOrSetAside()
{
    auto content = m_file.read();
    if (content || !SettingsFile::isDamage(content.error())) {
        return content;
    }
    // Kept and not deleted: a person can still rescue values from it.
    const auto newName = m_file.setAside();
    if (!newName) {
        return newName.error();
    }
    qCWarning(settingsLog, "%s holds no settings (%s); it was set aside as %s",
              tree::printableText(m_file.path()).c_str(), content.error().text().c_str(),
              tree::printableText(newName.value()).c_str());
    return SettingsFile::Content();
}

} // namespace tessaly
