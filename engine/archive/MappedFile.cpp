#include "engine/archive/MappedFile.hpp"

#include "engine/tree/PrintableText.hpp"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <mutex>
#include <utility>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tessaly::archive {

namespace {

using Kind = ArchiveError::Kind;

/// What the signal handler knows of one mapping. `start` is 0 while the place is free, and set
/// last. `useCount` tells the handler of another mapping that the place changed hands meanwhile.
struct Guard {
    std::atomic<bool> taken{false};
    std::atomic<unsigned> useCount{0};
    std::atomic<std::uintptr_t> start{0};
    std::atomic<std::uintptr_t> end{0};
    std::atomic<bool> cut{false};
};

constexpr std::size_t guardCount = 64;
constexpr std::size_t noGuard = guardCount;
std::array<Guard, guardCount> guards;
struct sigaction previousAction;
std::uintptr_t pageSize; // set before the handler is installed

static_assert(std::atomic<std::uintptr_t>::is_always_lock_free);

/// Has a signal that is not ours handled as if we were not there.
void passOn(int signal, siginfo_t *info, void *context, bool isFault)
{
    if ((previousAction.sa_flags & SA_SIGINFO) != 0) {
        previousAction.sa_sigaction(signal, info, context);
    } else if (previousAction.sa_handler != SIG_DFL && previousAction.sa_handler != SIG_IGN) {
        previousAction.sa_handler(signal);
    } else if (isFault || previousAction.sa_handler == SIG_DFL) {
        // This ends the process: when the instruction faults again, or at once.
        sigaction(SIGBUS, &previousAction, nullptr);
        raise(SIGBUS);
    }
}

/// Lays zeros over the missing rest of a guarded mapping and goes on. Uses nothing but atomics and
/// plain system calls.
void onBusError(int signal, siginfo_t *info, void *context)
{
    const int savedErrno = errno;
    const auto address = reinterpret_cast<std::uintptr_t>(info->si_addr);
    const std::uintptr_t page = address & ~(pageSize - 1);
    const bool isFault = info->si_code > 0; // not one that a process has sent
    for (Guard &guard : guards) {
        const unsigned useCount = guard.useCount.load();
        const std::uintptr_t start = guard.start.load();
        const std::uintptr_t end = guard.end.load();
        if (!isFault || start == 0 || address < start || address >= end ||
            guard.useCount.load() != useCount) {
            continue;
        }
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the address came as a number
        void *missing = mmap(reinterpret_cast<void *>(page), end - page, PROT_READ,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED | MAP_NORESERVE, -1, 0);
        if (missing != MAP_FAILED) {
            guard.cut.store(true);
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
        action.sa_flags = SA_SIGINFO | SA_ONSTACK;
        sigemptyset(&action.sa_mask);
        sigaction(SIGBUS, &action, &previousAction);
    });
}

std::size_t takeGuard(const void *start, std::size_t byteCount)
{
    for (std::size_t i = 0; i < guardCount; ++i) {
        if (guards[i].taken.exchange(true)) {
            continue;
        }
        const auto address = reinterpret_cast<std::uintptr_t>(start);
        guards[i].cut.store(false);
        guards[i].end.store(address + byteCount);
        guards[i].start.store(address);
        return i;
    }
    return noGuard;
}

void giveGuardBack(std::size_t guard)
{
    guards[guard].start.store(0);
    guards[guard].useCount.fetch_add(1);
    guards[guard].taken.store(false);
}

} // namespace

Result<MappedFile, ArchiveError> MappedFile::open(const std::string &path)
{
    const auto failure = [&](int errorNumber) {
        return systemError(Kind::unreadable, "cannot read " + tree::printableText(path),
                           errorNumber);
    };

    // A FIFO must not keep us waiting for its writer.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return failure(errno);
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
    ::close(descriptor);
    if (errorNumber != 0) {
        return failure(errorNumber);
    }
    if (!S_ISREG(status.st_mode)) {
        return ArchiveError{Kind::unreadable,
                            "cannot read " + tree::printableText(path) + ": not a regular file",
                            {}};
    }
    if (memory == nullptr) {
        return MappedFile({}, noGuard);
    }

    installHandler();
    const std::span bytes(static_cast<const std::byte *>(memory),
                          static_cast<std::size_t>(status.st_size));
    const std::size_t guard = takeGuard(memory, bytes.size());
    if (guard == noGuard) {
        munmap(memory, bytes.size());
        return ArchiveError{Kind::unreadable,
                            "cannot read " + tree::printableText(path) + ": too many files at once",
                            {}};
    }
    return MappedFile(bytes, guard);
}

MappedFile::~MappedFile()
{
    if (m_guard != noGuard) {
        giveGuardBack(m_guard);
        munmap(const_cast<std::byte *>(m_bytes.data()), m_bytes.size());
    }
}

MappedFile::MappedFile(MappedFile &&other) noexcept
    : m_bytes(std::exchange(other.m_bytes, {})), m_guard(std::exchange(other.m_guard, noGuard))
{
}

bool MappedFile::wasTruncated() const noexcept
{
    return m_guard != noGuard && guards[m_guard].cut.load();
}

} // namespace tessaly::archive
