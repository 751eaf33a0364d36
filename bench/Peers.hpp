#pragma once

#include <string>
#include <vector>

namespace tessaly {

/// A program to be timed beside ours.
struct Peer {
    std::string name;
    std::vector<std::string> command; ///< program, found by PATH, and arguments
};

/// Runs it to its end without input and with its output thrown away. Throws std::runtime_error when
/// it cannot be started; what it answers does not matter (some complain of unreadable folders).
void runPeer(const Peer &peer);

} // namespace tessaly
