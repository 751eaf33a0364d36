#include "cli/ScannedFolder.hpp"

#include "engine/scan/LUMThreadedScanner.hpp"
#include "engine/scan/OpenedFolder.hpp"
#include "engine/tree/PrintableText.hpp"

#include <cerrno>
#include <stdexcept>
#include <system_error>

namespace tessaly {

std::shared_ptr<tree::ScanTree> scannedFolder(const std::string &path)
{
    // errno stays 0 for a kernel file system, which is scanned as an empty folder.
    errno = 0;
    if (const scan::OpenedFolder folder = scan::openFolderPath(path);
        !folder.descriptor.isOpen() && errno != 0) {
        throw std::runtime_error("cannot list " + tree::printableText(path) + ": " +
                                 std::generic_category().message(errno));
    }
    scan::LUMThreadedScanner scanner;
    scanner.scanRootFolder(path);
    scanner.waitUntilFinished();
    return scanner.tree();
}

} // namespace tessaly
