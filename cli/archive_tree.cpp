// archive_tree FOLDER FILE  scans FOLDER and writes the tree to FILE as a scan file
//
// On failure it says why in one line on standard error and exits with status 1; FILE is then
// unchanged.

#include "cli/ScannedFolder.hpp"
#include "engine/archive/AtomicFile.hpp"
#include "engine/archive/ScanFileWriter.hpp"
#include "engine/tree/FilePath.hpp"

#include <exception>
#include <iostream>
#include <string>

int main(int argumentCount, char **arguments)
{
    if (argumentCount != 3) {
        std::cerr << "usage: archive_tree FOLDER FILE\n";
        return 2;
    }
    try {
        const std::string file = arguments[2];
        tessaly::archive::AtomicFile::removeLeftovers(tessaly::tree::containingFolder(file));
        const auto tree = tessaly::scannedFolder(arguments[1]);
        const auto written = tessaly::archive::writeScanFile(tree->root(), file);
        if (!written) {
            std::cerr << written.error().text() << '\n';
            return 1;
        }
        return 0;
    } catch (const std::exception &failure) {
        std::cerr << failure.what() << '\n';
        return 1;
    }
}
