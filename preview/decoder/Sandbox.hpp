#pragma once

#include <string>
#include <vector>

#include <linux/filter.h>

namespace tessaly {

/// Confines a decoder, since a file may exploit a bug in it. A process cannot leave it again.
///
/// Uses what the kernel offers: resource limits, which every kernel has, Landlock and seccomp.
/// Under a sanitizer, which needs more memory and more system calls, only time is limited.
///
/// Threads: the process must have only one.
class Sandbox {
public:
    /// The address space of the server and of each decoder.
    static constexpr unsigned long long maxMemoryBytes = 512ULL << 20U;
    /// The processor time of a decoder.
    static constexpr unsigned maxCpuSeconds = 20;

    /// Limits memory, and leaves no core dumps. Passed on to forked processes.
    static void limitMemory();

    /// Prepares a sandbox in which files below these folders can be read.
    explicit Sandbox(std::vector<std::string> readableFolders = fontFolders());

    /// Limits the time; from then on there are no further processes and programs, no network, no
    /// signals and no files to open but those below the folders, and these only to be read. Without
    /// Landlock there are not even those.
    void enter() const;

    /// Where the fonts lie that text may be drawn with.
    [[nodiscard]] static std::vector<std::string> fontFolders();

private:
    std::vector<std::string> m_readableFolders;
    // The filters of system calls, ready to be loaded: compiling them takes longer than forking.
    std::vector<sock_filter> m_callsWithFiles;
    std::vector<sock_filter> m_callsWithoutFiles;
};

} // namespace tessaly
