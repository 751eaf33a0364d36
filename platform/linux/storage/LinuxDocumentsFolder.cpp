#include "platform/linux/storage/LinuxDocumentsFolder.hpp"

#include "engine/tree/FilePath.hpp"
#include "engine/tree/PrintableText.hpp"
#include "platform/linux/storage/PrivateFolder.hpp"
#include "platform/linux/storage/XdgFolders.hpp"

#include <QLoggingCategory>

#include <cerrno>
#include <system_error>

#include <sys/stat.h>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(documentsLog, "tessaly.documents")

/// Names of scanned files are private; an older version or a backup may have made it readable.
std::error_code closeToOthers(const std::string &folder)
{
    struct stat status = {};
    if (stat(folder.c_str(), &status) == 0 &&
        ((status.st_mode & (S_IRWXG | S_IRWXO)) == 0 || chmod(folder.c_str(), S_IRWXU) == 0)) {
        return {};
    }
    return {errno, std::system_category()};
}

} // namespace

std::string LinuxDocumentsFolder::defaultPath()
{
    return XdgFolders::data() + "/tessaly";
}

LinuxDocumentsFolder::LinuxDocumentsFolder(std::string_view path) : m_path(tree::cleanPath(path)) {}

std::string LinuxDocumentsFolder::path()
{
    // At each call: the folder may have been deleted while the program runs. Errors are only
    // logged, since writing a file there fails as well.
    if (const std::error_code error = makePrivateFolder(m_path)) {
        qCWarning(documentsLog, "cannot make the folder %s: %s",
                  tree::printableText(m_path).c_str(), error.message().c_str());
    } else if (const std::error_code stillOpen = closeToOthers(m_path)) {
        qCWarning(documentsLog, "others can look into %s: %s", tree::printableText(m_path).c_str(),
                  stillOpen.message().c_str());
    }
    return m_path;
}

} // namespace tessaly
