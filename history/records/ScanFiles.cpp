#include "history/records/ScanFiles.hpp"

#include "engine/archive/FileCalls.hpp"
#include "engine/archive/ScanFileReader.hpp"
#include "engine/scan/FileDescriptor.hpp"
#include "engine/tree/PrintableText.hpp"
#include "engine/tree/SizeText.hpp"

#include <QLoggingCategory>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(scanFilesLog, "tessaly.history.files", QtWarningMsg)

constexpr std::string_view scanFileSuffix = ".archive";

/// Whether this is a key as KORVENHistoryItem::UUIDString() makes them.
bool isUuid(std::string_view text) noexcept
{
    constexpr std::string_view shape = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
    return std::equal(text.begin(), text.end(), shape.begin(), shape.end(), [](char c, char form) {
        return form == '-' ? c == '-' : (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    });
}

/// When the file was written. Nothing when it is no regular file, or is being written.
std::optional<archive::Timestamp> dateOfFinishedFile(const std::string &path)
{
    using namespace std::chrono;
    const scan::FileDescriptor file(archive::retried(
        // O_NONBLOCK, since opening a FIFO of this name would wait for a writer. It changes nothing
        // for regular files.
        [&] { return ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK); }));
    struct stat status = {};
    if (!file.isOpen() || fstat(file.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
        return std::nullopt;
    }
    // The writer holds an exclusive lock. Any other failure, as on a file system without locks,
    // does not speak against the file.
    if (archive::retried([&] { return ::flock(file.number(), LOCK_SH | LOCK_NB); }) != 0 &&
        errno == EWOULDBLOCK) {
        return std::nullopt;
    }
    // Timestamp counts from here.
    constexpr sys_seconds reference = sys_days{2001y / January / 1};
    const auto written = seconds(status.st_mtim.tv_sec) + nanoseconds(status.st_mtim.tv_nsec);
    return archive::Timestamp{duration<double>(written - reference.time_since_epoch()).count()};
}

} // namespace

std::vector<std::string> scanKeysIn(const std::string &folder)
{
    std::vector<std::string> keys;
    std::error_code unreadable; // ends the listing
    std::filesystem::directory_iterator entry(folder, unreadable);
    for (; entry != std::filesystem::directory_iterator(); entry.increment(unreadable)) {
        std::string name = entry->path().filename().native();
        // Only the name is looked at. This runs when the store is made, and a stat for each of
        // thousands of files would delay it.
        if (name.ends_with(scanFileSuffix)) {
            name.resize(name.size() - scanFileSuffix.size());
            if (isUuid(name)) {
                keys.push_back(std::move(name));
            }
        }
    }
    return keys;
}

HistoryRecords::value_type recoveredRecord(const std::string &scanKey, const std::string &path)
{
    const auto date = dateOfFinishedFile(path);
    if (!date) {
        return nullptr;
    }
    const auto tree = archive::readScanFile(path);
    if (!tree) {
        qCWarning(scanFilesLog, "%s has no record and is left alone: %s",
                  tree::printableText(path).c_str(),
                  tree::printableText(tree.error().text()).c_str());
        return nullptr;
    }
    const tree::LUMFileContainer &root = tree.value()->root();
    KORVENHistoryItem record("", "");
    record.setScanKey(scanKey);
    record.setScanPath(std::string(root.itemName()));
    // As the record of a scan says it: of the exact total.
    record.setScanTotal(tree::sizeText(static_cast<double>(root.valueOfSubitems())));
    record.setScanDate(date);
    return std::make_shared<const KORVENHistoryItem>(record);
}

} // namespace tessaly
