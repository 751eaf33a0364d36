// write_plist_samples FOLDER: writes there what another reader is to understand, the samples of
// PlistSamples.hpp: values.bplist and history.archive.

#include "engine/archive/AtomicFile.hpp"
#include "tests/engine/archive/PlistSamples.hpp"

#include <functional>
#include <iostream>

namespace {

using namespace tessaly;

bool writeFile(
    const std::string &path,
    const std::function<archive::Result<archive::Done, archive::ArchiveError>(archive::ByteSink &)>
        &write)
{
    archive::AtomicFile file(path);
    auto done = file.open();
    done = done ? write(file) : done;
    done = done ? file.commit() : done;
    if (!done) {
        std::cerr << done.error().text() << '\n';
    }
    return done.hasValue();
}

} // namespace

int main(int argumentCount, char **arguments)
{
    if (argumentCount != 2) {
        std::cerr << "usage: write_plist_samples FOLDER\n";
        return 2;
    }
    const std::string folder = arguments[1];
    const bool areWritten =
        writeFile(folder + "/values.bplist",
                  [](archive::ByteSink &sink) {
                      return archive::writePropertyList(sampleOfEveryType(), sink);
                  }) &&
        writeFile(folder + "/history.archive", [](archive::ByteSink &sink) {
            archive::KeyedArchiveWriter archive;
            const auto list = addRecords(archive, sampleRecords());
            return archive.finish(list, sink);
        });
    return areWritten ? 0 : 1;
}
