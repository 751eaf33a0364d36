#include "preview/decoder/Sandbox.hpp"

#include "engine/scan/FileDescriptor.hpp"

#include <QFile>
#include <QStandardPaths>

#include <array>
#include <cerrno>
#include <cstdint>
#include <utility>

#include <fcntl.h>
#include <linux/landlock.h>
#include <linux/seccomp.h>
#include <sched.h>
#include <seccomp.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tessaly {

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool isSanitized = true;
#else
constexpr bool isSanitized = false;
#endif

void setLimit(__rlimit_resource_t resource, rlim_t maxValue)
{
    // The hard limit as well, or the process could raise the soft one again.
    const rlimit limit{maxValue, maxValue};
    setrlimit(resource, &limit);
}

/// All that this version of Landlock knows to forbid.
std::uint64_t knownAccess(long version)
{
    // Of later versions than the headers: truncating, and commands to devices.
    constexpr std::uint64_t truncate = 1ULL << 14U;
    constexpr std::uint64_t deviceCommands = 1ULL << 15U;
    std::uint64_t access = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1;
    access |= version >= 2 ? LANDLOCK_ACCESS_FS_REFER : 0;
    access |= version >= 3 ? truncate : 0;
    access |= version >= 5 ? deviceCommands : 0;
    return access;
}

/// Whether all files are out of reach but those below these folders.
bool forbidOtherFiles(const std::vector<std::string> &readableFolders)
{
    const long version =
        syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) {
        return false;
    }
    // A kernel refuses rules with rights that it does not know, so they depend on its version.
    const landlock_ruleset_attr handled{knownAccess(version)};
    const scan::FileDescriptor rules(
        static_cast<int>(syscall(SYS_landlock_create_ruleset, &handled, sizeof handled, 0)));
    if (!rules.isOpen()) {
        return false;
    }
    for (const std::string &path : readableFolders) {
        const scan::FileDescriptor folder(open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        // A folder that does not exist on this system needs no rule.
        if (folder.isOpen()) {
            const landlock_path_beneath_attr rule{
                LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR, folder.number()};
            syscall(SYS_landlock_add_rule, rules.number(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0);
        }
    }
    return syscall(SYS_landlock_restrict_self, rules.number(), 0) == 0;
}

/// What decoders, memory, threads and the socket take. Opening files comes on top.
constexpr std::array harmlessCalls{SCMP_SYS(read),
                                   SCMP_SYS(readv),
                                   SCMP_SYS(pread64),
                                   SCMP_SYS(write),
                                   SCMP_SYS(writev),
                                   SCMP_SYS(lseek),
                                   SCMP_SYS(_llseek),
                                   SCMP_SYS(close),
                                   SCMP_SYS(dup),
                                   SCMP_SYS(fstat),
                                   SCMP_SYS(fstat64),
                                   SCMP_SYS(stat),
                                   SCMP_SYS(stat64),
                                   SCMP_SYS(lstat),
                                   SCMP_SYS(lstat64),
                                   SCMP_SYS(newfstatat),
                                   SCMP_SYS(fstatat64),
                                   SCMP_SYS(statx),
                                   SCMP_SYS(fstatfs),
                                   SCMP_SYS(fstatfs64),
                                   SCMP_SYS(access),
                                   SCMP_SYS(faccessat),
                                   SCMP_SYS(faccessat2),
                                   SCMP_SYS(readlink),
                                   SCMP_SYS(readlinkat),
                                   SCMP_SYS(getcwd),
                                   SCMP_SYS(getdents),
                                   SCMP_SYS(getdents64),
                                   SCMP_SYS(fcntl),
                                   SCMP_SYS(fcntl64),
                                   SCMP_SYS(fadvise64),
                                   SCMP_SYS(mmap),
                                   SCMP_SYS(mmap2),
                                   SCMP_SYS(munmap),
                                   SCMP_SYS(mremap),
                                   SCMP_SYS(mprotect),
                                   SCMP_SYS(madvise),
                                   SCMP_SYS(brk),
                                   SCMP_SYS(futex),
                                   SCMP_SYS(futex_time64),
                                   SCMP_SYS(set_robust_list),
                                   SCMP_SYS(rseq),
                                   SCMP_SYS(sched_yield),
                                   SCMP_SYS(sched_getaffinity),
                                   SCMP_SYS(sched_getparam),
                                   SCMP_SYS(sched_getscheduler),
                                   SCMP_SYS(membarrier),
                                   SCMP_SYS(exit),
                                   SCMP_SYS(exit_group),
                                   SCMP_SYS(rt_sigaction),
                                   SCMP_SYS(rt_sigprocmask),
                                   SCMP_SYS(rt_sigreturn),
                                   SCMP_SYS(sigreturn),
                                   SCMP_SYS(sigaltstack),
                                   SCMP_SYS(restart_syscall),
                                   SCMP_SYS(gettid),
                                   SCMP_SYS(getpid),
                                   SCMP_SYS(getppid),
                                   SCMP_SYS(getuid),
                                   SCMP_SYS(geteuid),
                                   SCMP_SYS(getgid),
                                   SCMP_SYS(getegid),
                                   SCMP_SYS(getrandom),
                                   SCMP_SYS(uname),
                                   SCMP_SYS(sysinfo),
                                   SCMP_SYS(getrusage),
                                   SCMP_SYS(times),
                                   SCMP_SYS(time),
                                   SCMP_SYS(gettimeofday),
                                   SCMP_SYS(clock_gettime),
                                   SCMP_SYS(clock_gettime64),
                                   SCMP_SYS(clock_getres),
                                   SCMP_SYS(clock_nanosleep),
                                   SCMP_SYS(nanosleep),
                                   SCMP_SYS(poll),
                                   SCMP_SYS(ppoll),
                                   SCMP_SYS(sendmsg),
                                   SCMP_SYS(recvmsg),
                                   SCMP_SYS(eventfd2),
                                   SCMP_SYS(pipe2)};

bool allow(scmp_filter_ctx filter, int call)
{
    return seccomp_rule_add(filter, SCMP_ACT_ALLOW, call, 0) == 0;
}

/// Calls that are harmless with some arguments only.
bool allowInPart(scmp_filter_ctx filter)
{
    // Libraries may start threads, but not processes.
    constexpr scmp_datum_t thread = CLONE_THREAD;
    return seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(clone), 1,
                            SCMP_A0(SCMP_CMP_MASKED_EQ, thread, thread)) == 0 &&
           // Its flags are out of sight. The C library takes the older call instead.
           seccomp_rule_add(filter, SCMP_ACT_ERRNO(ENOSYS), SCMP_SYS(clone3), 0) == 0 &&
           seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(prctl), 1,
                            SCMP_A0(SCMP_CMP_EQ, PR_SET_NAME)) == 0 && // of threads
           seccomp_rule_add(filter, SCMP_ACT_ALLOW, SCMP_SYS(prlimit64), 1,
                            SCMP_A2(SCMP_CMP_EQ, 0)) == 0; // tells limits, changes none
}

/// The filter as the kernel wants it.
std::vector<sock_filter> compiled(scmp_filter_ctx filter)
{
    // The library writes a filter to a descriptor only. It is made before any decoder exists, since
    // inside of the sandbox there is no memfd_create().
    const scan::FileDescriptor memory(memfd_create("tessaly-filter", MFD_CLOEXEC));
    if (!memory.isOpen() || seccomp_export_bpf(filter, memory.number()) != 0) {
        return {};
    }
    const off_t length = lseek(memory.number(), 0, SEEK_END);
    std::vector<sock_filter> program(static_cast<std::size_t>(length) / sizeof(sock_filter));
    const ssize_t got = pread(memory.number(), program.data(), static_cast<std::size_t>(length), 0);
    return got == length ? program : std::vector<sock_filter>();
}

/// A filter that makes other calls than those above fail. None when this system's kernel or
/// processor is unknown to it: an incomplete one would stop every decoder.
std::vector<sock_filter> filterOfCalls(bool mayOpenFiles)
{
    // An error and not a signal: libraries probe for calls and manage without them.
    const scmp_filter_ctx filter = seccomp_init(SCMP_ACT_ERRNO(EPERM));
    if (filter == nullptr) {
        return {};
    }
    bool isComplete = allowInPart(filter);
    for (const int call : harmlessCalls) {
        isComplete = isComplete && allow(filter, call);
    }
    if (mayOpenFiles) {
        // seccomp cannot see paths, so opening is allowed only where Landlock restricts it.
        isComplete = isComplete && allow(filter, SCMP_SYS(open)) && allow(filter, SCMP_SYS(openat));
    }
    std::vector<sock_filter> program = isComplete ? compiled(filter) : std::vector<sock_filter>();
    seccomp_release(filter);
    return program;
}

} // namespace

void Sandbox::limitMemory()
{
    // A core dump would hold the user's file, and take seconds on a slow disk.
    setLimit(RLIMIT_CORE, 0);
    if (!isSanitized) {
        setLimit(RLIMIT_AS, maxMemoryBytes);
    }
}

Sandbox::Sandbox(std::vector<std::string> readableFolders)
    : m_readableFolders(std::move(readableFolders)), m_callsWithFiles(filterOfCalls(true)),
      m_callsWithoutFiles(filterOfCalls(false))
{
}

void Sandbox::enter() const
{
    setLimit(RLIMIT_CPU, maxCpuSeconds);
    if (isSanitized) {
        return;
    }
    // Where neither Landlock nor seccomp works, at least no file can be written.
    setLimit(RLIMIT_FSIZE, 0);
    // The kernel demands this of an ordinary user before both Landlock and seccomp.
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    const std::vector<sock_filter> &calls =
        forbidOtherFiles(m_readableFolders) ? m_callsWithFiles : m_callsWithoutFiles;
    if (!calls.empty()) {
        const sock_fprog program{static_cast<unsigned short>(calls.size()),
                                 const_cast<sock_filter *>(calls.data())}; // is only read
        prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program, 0, 0);
    }
}

std::vector<std::string> Sandbox::fontFolders()
{
    // The font library's settings and what it remembers, besides.
    std::vector<std::string> folders{"/etc/fonts", "/usr/share/fontconfig",
                                     "/var/cache/fontconfig"};
    const auto add = [&folders](const QString &path) {
        folders.push_back(QFile::encodeName(path).toStdString());
    };
    for (const QString &path : QStandardPaths::standardLocations(QStandardPaths::FontsLocation)) {
        add(path);
    }
    using Location = QStandardPaths::StandardLocation;
    for (const Location location :
         {QStandardPaths::GenericCacheLocation, QStandardPaths::GenericConfigLocation}) {
        add(QStandardPaths::writableLocation(location) + u"/fontconfig"_s);
    }
    return folders;
}

} // namespace tessaly
