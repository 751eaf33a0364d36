#include "tests/engine/archive/ArchiveVectors.hpp"

#include "tests/engine/archive/PlistBuilder.hpp"

#include <fstream>
#include <iterator>
#include <ostream>
#include <sstream>
#include <stdexcept>

namespace tessaly {

std::vector<ArchiveVector> archiveVectors(const std::string &content)
{
    std::vector<ArchiveVector> vectors;
    std::istringstream lines(fileText(vectorPath("vectors.txt")));
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        ArchiveVector vector;
        fields >> vector.file >> vector.content >> vector.outcome >> vector.dump;
        if (vector.content == content) {
            vectors.push_back(std::move(vector));
        }
    }
    return vectors;
}

void PrintTo(const ArchiveVector &vector, std::ostream *out)
{
    *out << vector.file;
}

std::string vectorPath(const std::string &file)
{
    return TESSALY_TEST_DATA_DIR "/archive/" + file;
}

std::string kindName(archive::ArchiveError::Kind kind)
{
    switch (kind) {
    case archive::ArchiveError::Kind::unreadable:
        return "unreadable";
    case archive::ArchiveError::Kind::unwritable:
        return "unwritable";
    case archive::ArchiveError::Kind::notAnArchive:
        return "notAnArchive";
    case archive::ArchiveError::Kind::truncated:
        return "truncated";
    case archive::ArchiveError::Kind::damaged:
        return "damaged";
    case archive::ArchiveError::Kind::unsupported:
        return "unsupported";
    case archive::ArchiveError::Kind::outOfMemory:
        return "outOfMemory";
    }
    return "none";
}

std::string fileText(const std::string &path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error("cannot open " + path);
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::byte> vectorBytes(const std::string &file)
{
    return bytesOf(fileText(vectorPath(file)));
}

} // namespace tessaly
