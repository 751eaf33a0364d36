#pragma once

#include <QByteArray>

#include <string>
#include <vector>

namespace tessaly {

/// A small file that takes very much memory or time to decode, or leads elsewhere.
struct HostileFile {
    std::string name;
    QByteArray bytes;
    /// Whether its decoder is busy until it is killed.
    bool isEndless = false;
};

/// One or more of each format that previews are made of. `pipe` is the path of a pipe that some
/// refer to: opening it blocks for ever.
[[nodiscard]] std::vector<HostileFile> hostileFiles(const std::string &pipe);

} // namespace tessaly
