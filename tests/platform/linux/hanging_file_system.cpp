// hanging_file_system FOLDER TOTAL FREE [OPERATION...]: shows a file system by FUSE that stops
// answering when it is told to, as one whose server is gone. It holds a folder "inside", a file
// "file" and a link "link" to the folder.
//
// The operations (statfs, getattr, readdir) wait from SIGUSR1 until SIGUSR2; all others are always
// answered. TOTAL and FREE are blocks of 4096 bytes. On descriptor 3 it says "mounted", "hanging"
// and "answering", and "held OPERATION" for each request that it keeps waiting. SIGTERM ends it.

#define FUSE_USE_VERSION 35

#include <array>
#include <cerrno>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <set>
#include <string>
#include <string_view>
#include <thread>

#include <fuse.h>
#include <unistd.h>

namespace {

struct Volume {
    std::mutex mutex;
    std::condition_variable hasChanged;
    bool isHanging = false;
    std::set<std::string, std::less<>> hangingOperations;
    fsblkcnt_t total = 0;
    fsblkcnt_t free = 0;
};

/// Never destroyed: requests may be waiting at the end.
Volume &volume()
{
    static auto *const instance = new Volume;
    return *instance;
}

void report(const std::string &line)
{
    const std::string text = line + '\n';
    (void)!write(3, text.data(), text.size());
}

/// Waits as long as the operation is not answered.
void hold(std::string_view operation)
{
    Volume &all = volume();
    std::unique_lock lock(all.mutex);
    if (all.isHanging && all.hangingOperations.contains(operation)) {
        report("held " + std::string(operation));
        all.hasChanged.wait(lock, [&] { return !all.isHanging; });
    }
}

void setHanging(bool isHanging)
{
    Volume &all = volume();
    const std::scoped_lock lock(all.mutex);
    all.isHanging = isHanging;
    report(isHanging ? "hanging" : "answering");
    all.hasChanged.notify_all();
}

int getattr(const char *path, struct stat *status, fuse_file_info * /*file*/)
{
    hold("getattr");
    const std::string_view name = path;
    *status = {};
    status->st_nlink = 1;
    if (name == "/" || name == "/inside") {
        status->st_mode = S_IFDIR | S_IRWXU;
    } else if (name == "/file") {
        status->st_mode = S_IFREG | S_IRUSR;
    } else if (name == "/link") {
        status->st_mode = S_IFLNK | S_IRWXU;
    } else {
        return -ENOENT;
    }
    return 0;
}

int readlink(const char * /*path*/, char *target, std::size_t size)
{
    constexpr std::string_view text = "inside";
    target[text.copy(target, size - 1)] = '\0';
    return 0;
}

int readdir(const char *path, void *entries, fuse_fill_dir_t fill, off_t /*offset*/,
            fuse_file_info * /*file*/, fuse_readdir_flags /*flags*/)
{
    hold("readdir");
    if (path == std::string_view("/")) {
        for (const auto &[name, mode] : {std::pair<const char *, mode_t>{"inside", S_IFDIR},
                                         {"file", S_IFREG},
                                         {"link", S_IFLNK}}) {
            struct stat status = {};
            status.st_mode = mode;
            fill(entries, name, &status, 0, fuse_fill_dir_flags());
        }
    }
    return 0;
}

int statfs(const char * /*path*/, struct statvfs *status)
{
    hold("statfs");
    *status = {};
    status->f_bsize = 4096;
    status->f_frsize = 4096;
    status->f_blocks = volume().total;
    status->f_bfree = volume().free;
    status->f_bavail = volume().free;
    return 0;
}

void *init(fuse_conn_info * /*connection*/, fuse_config *configuration)
{
    // The kernel asks each time.
    configuration->attr_timeout = 0;
    configuration->entry_timeout = 0;
    report("mounted");
    return nullptr;
}

[[noreturn]] void heedSignals(const sigset_t &signals)
{
    for (;;) {
        int number = 0;
        sigwait(&signals, &number);
        if (number == SIGTERM) {
            _exit(0);
        }
        setHanging(number == SIGUSR1);
    }
}

} // namespace

int main(int argumentCount, char **arguments)
{
    if (argumentCount < 4) {
        return 2;
    }
    volume().total = std::strtoull(arguments[2], nullptr, 10);
    volume().free = std::strtoull(arguments[3], nullptr, 10);
    volume().hangingOperations.insert(arguments + 4, arguments + argumentCount);
    sigset_t signals;
    sigemptyset(&signals);
    for (const int number : {SIGUSR1, SIGUSR2, SIGTERM}) {
        sigaddset(&signals, number);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::thread([signals] { heedSignals(signals); }).detach();

    fuse_operations operations = {};
    operations.getattr = getattr;
    operations.readlink = readlink;
    operations.readdir = readdir;
    operations.statfs = statfs;
    operations.init = init;
    std::array<std::string, 5> words = {arguments[0], "-f", "-o", "fsname=hanging,subtype=hanging",
                                        arguments[1]};
    std::array<char *, 6> pointers{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        pointers.at(i) = words.at(i).data();
    }
    return fuse_main(static_cast<int>(words.size()), pointers.data(), &operations, nullptr);
}
