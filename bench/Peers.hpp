#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// A program to compare ours with.
struct Peer {
    std::string name;
    std::vector<std::string> command; ///< program, found by PATH, and arguments
};

/// Runs it to its end, without input and with its output discarded. Throws std::runtime_error when
/// it cannot be started. Its exit status does not matter: some report unreadable folders that way.
void runPeer(const Peer &peer);

} // namespace tessaly
