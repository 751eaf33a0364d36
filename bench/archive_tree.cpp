// archive_tree FOLDER FILE  scans FOLDER and writes the tree to FILE as a scan file

#include "engine/LUMThreadedScanner.hpp"
#include "engine/ScanFileWriter.hpp"

#include <exception>
#include <iostream>

int main(int argumentCount, char **arguments)
{
    if (argumentCount != 3) {
        std::cerr << "usage: archive_tree FOLDER FILE\n";
        return 2;
    }
    try {
        tessaly::LUMThreadedScanner scanner;
        const tessaly::LUMFileContainer &root = scanner.scanRootFolder(arguments[1]);
        scanner.waitUntilFinished();
        const auto written = tessaly::writeScanFile(root, arguments[2]);
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
