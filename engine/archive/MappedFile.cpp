#include "engine/archive/MappedFile.hpp"

#include "engine/tree/PrintableText.hpp"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;

/// What the signal handler knows of one mapping.
///
/// Threads: a signal handler may take no lock, so all is atomic, and the order of the writes
///          matters: `start` is set last and cleared first, and the handler ignores a guard where
///          it is 0. While a handler reads a guard of another thread, that mapping may end and
///          another begin; `useCount` then differs before and after, and the guard is not the
///          fault's.
struct Guard {
    std::atomic<bool> isUsed{false};
    std::atomic<unsigned> useCount{0};
    std::atomic<std::uintptr_t> start{0};
    std::atomic<std::uintptr_t> end{0};
    std::atomic<bool> wasTruncated{false};
};

// A fixed table: the handler may not walk a container that another thread changes.
constexpr std::size_t maxGuards = 64;
constexpr std::size_t noGuard = maxGuards;
std::array<Guard, maxGuards> guards;
struct sigaction previousAction;
std::uintptr_t pageSize; // set before the handler is installed

static_assert(std::atomic<std::uintptr_t>::is_always_lock_free,
              "a lock would deadlock in a handler");

/// Passes a signal that is not ours to the previous handler, as if there were no handler of ours.
void passOn(int signal, siginfo_t *info, void *context, bool isFault)
{
    if ((previousAction.sa_flags & SA_SIGINFO) != 0) {
        previousAction.sa_sigaction(signal, info, context);
    } else if (previousAction.sa_handler != SIG_DFL && previousAction.sa_handler != SIG_IGN) {
        previousAction.sa_handler(signal);
    } else if (isFault || previousAction.sa_handler == SIG_DFL) {
        // The default action ends the process: a fault as soon as the handler returns and the same
        // instruction faults again, a signal sent by a process at once.
        sigaction(SIGBUS, &previousAction, nullptr);
        raise(SIGBUS);
    }
}

/// Maps zeros over the missing rest of a guarded mapping, and returns to the instruction that
/// faulted. Uses nothing but atomics and async-signal-safe system calls; mmap() is not on POSIX's
/// list of those, but a plain system call on Linux.
void onBusError(int signal, siginfo_t *info, void *context)
{
    const int savedErrno = errno;
    const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
    const std::uintptr_t page = address & ~(pageSize - 1);
    const bool isFault = info->si_code > 0; // by the kernel; kill() and raise() give 0 or less
    for (Guard &guard : guards) {
        const unsigned useCount = guard.useCount.load();
        const std::uintptr_t start = guard.start.load();
        const std::uintptr_t end = guard.end.load();
        if (!isFault || start == 0 || address < start || address >= end ||
            guard.useCount.load() != useCount) {
            continue;
        }
        // To the end and not just this page: a large file would fault once for each page. Private
        // and unreserved, so that zeros take no memory. MAP_FIXED replaces the pages atomically.
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the address came as a number
        void *missing = mmap(reinterpret_cast<void *>(page), end - page, PROT_READ,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED | MAP_NORESERVE, -1, 0);
        if (missing != MAP_FAILED) {
            guard.wasTruncated.store(true);
            errno = savedErrno;
            return;
        }
    }
    passOn(signal, info, context, isFault);
    errno = savedErrno;
}

void installHandler()
{
    static std::once_flag installed;
    std::call_once(installed, [] {
        pageSize = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
        struct sigaction action = {};
        action.sa_sigaction = onBusError;
        action.sa_flags = SA_SIGINFO | SA_ONSTACK; // the other stack only where a thread has one
        sigemptyset(&action.sa_mask);
        sigaction(SIGBUS, &action, &previousAction);
    });
}

/// The index of a free guard, which now stands for the mapping; noGuard when none is free.
std::size_t acquireGuard(const void *start, std::size_t byteCount)
{
    for (std::size_t i = 0; i < maxGuards; ++i) {
        if (guards[i].isUsed.exchange(true)) {
            continue;
        }
        const auto address = reinterpret_cast<std::uintptr_t>(start);
        guards[i].wasTruncated.store(false);
        guards[i].end.store(address + byteCount);
        // The start last: the signal handler takes a guard with a start for complete.
        guards[i].start.store(address);
        return i;
    }
    return noGuard;
}

void releaseGuard(std::size_t guard)
{
    // Before munmap(): another thread may map the same addresses for something else right after it.
    guards[guard].start.store(0);
    guards[guard].useCount.fetch_add(1);
    guards[guard].isUsed.store(false);
}

} // namespace

Result<MappedFile, ArchiveError> MappedFile::open(const std::string &path)
{
    const auto failure = [&](const std::string &why) {
        return ArchiveError{
            Kind::unreadable, "cannot read " + tree::printableText(path) + ": " + why, {}};
    };
    const auto systemFailure = [&](int errorNumber) {
        return failure(std::system_category().message(errorNumber));
    };

    // O_NONBLOCK: a FIFO without a writer would block the open().
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return systemFailure(errno);
    }
    struct stat status = {};
    void *memory = nullptr;
    int errorNumber = 0;
    if (fstat(descriptor, &status) != 0) {
        errorNumber = errno;
    } else if (S_ISREG(status.st_mode) && status.st_size > 0) {
        memory = mmap(nullptr, static_cast<std::size_t>(status.st_size), PROT_READ, MAP_PRIVATE,
                      descriptor, 0);
        errorNumber = memory == MAP_FAILED ? errno : 0;
    }
    ::close(descriptor); // a mapping keeps its file open by itself
    if (errorNumber != 0) {
        return systemFailure(errorNumber);
    }
    if (!S_ISREG(status.st_mode)) {
        return failure("not a regular file");
    }
    if (memory == nullptr) { // mmap() refuses a length of 0
        return MappedFile({}, noGuard);
    }

    installHandler();
    const std::span bytes(static_cast<const std::byte *>(memory),
                          static_cast<std::size_t>(status.st_size));
    // Without a guard a file that is cut would end the program by SIGBUS, so it is refused.
    const std::size_t guard = acquireGuard(memory, bytes.size());
    if (guard == noGuard) {
        munmap(memory, bytes.size());
        return failure("too many files at once");
    }
    return MappedFile(bytes, guard);
}

MappedFile::~MappedFile()
{
    if (m_guard != noGuard) {
        releaseGuard(m_guard);
        munmap(const_cast<std::byte *>(m_bytes.data()), m_bytes.size());
    }
}

MappedFile::MappedFile(MappedFile &&other) noexcept
    : m_bytes(std::exchange(other.m_bytes, {})), m_guard(std::exchange(other.m_guard, noGuard))
{
}

bool MappedFile::wasTruncated() const noexcept
{
    return m_guard != noGuard && guards[m_guard].wasTruncated.load();
}

} // namespace tessaly::archive
